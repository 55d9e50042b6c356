// Vectors lent to the levels of a recursion and taken back, so that a walk through a tree
// allocates about as many as the tree is deep, not one per node.
#pragma once

#include <utility>
#include <vector>

namespace XmlPlugin {

template <typename T>
class XPathVectorPool {
 public:
  // An empty vector while the lease lives.
  class Lease {
   public:
    explicit Lease(XPathVectorPool& io_Pool) : m_Pool(io_Pool), m_Items(io_Pool.take()) {}
    ~Lease() { m_Pool.giveBack(std::move(m_Items)); }
    Lease(const Lease&) = delete;
    Lease& operator=(const Lease&) = delete;

    std::vector<T>& operator*() { return m_Items; }

   private:
    XPathVectorPool& m_Pool;
    std::vector<T> m_Items;
  };

 private:
  std::vector<T> take() {
    if (m_Free.empty()) {
      return std::vector<T>();
    }
    std::vector<T> items = std::move(m_Free.back());
    m_Free.pop_back();
    return items;
  }
  void giveBack(std::vector<T>&& io_Items) {
    io_Items.clear();
    m_Free.push_back(std::move(io_Items));
  }

  std::vector<std::vector<T>> m_Free;
};

}  // namespace XmlPlugin
