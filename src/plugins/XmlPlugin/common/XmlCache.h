// The process-wide cache of parsed documents, keyed by the file name exactly as given.
//
// Names that lead to the same unchanged file (another spelling, a link) share one tree: each
// name is its own entry, answered from the tree its first request found, and a tree goes when
// its last entry does. Unbounded unless XMLPLUGIN_CACHE_MAX_MB sets a budget of MiB; the least
// recently used trees are then evicted, with all their entries, to stay within it.
#pragma once

#include <cstddef>
#include <list>
#include <map>
#include <memory>
#include <vector>

#include "host/File.h"
#include "host/Node.h"
#include "host/String.h"
#include "host/Types.h"

namespace XmlPlugin {

class XmlCache {
 public:
  // The one instance, created empty on first use; it reads its budget then.
  static XmlCache* get();
  // Deletes the instance and every tree in it; nothing when there is none.
  static void cleanup();

  // The tree of the file, loading it on first use of the name. The tree stays owned by the
  // cache and valid until cleanup(), or with a budget until the next request for a name that
  // is not cached. A failed load is not cached: -15103.
  TErrorCode getXmlTree(const String& i_FileName, const Node*& o_pTree);

  // Bytes held by all the cache's trees, and how many trees there are.
  size_t getHeldBytes() const { return m_HeldBytes; }
  size_t getTreeCount() const { return m_Trees.size(); }

  virtual ~XmlCache();

 private:
  // One loaded tree and the names it answers.
  struct CachedTree {
    std::unique_ptr<Node> m_pRoot;  // null for a file read without a tree
    FileIdentity m_FileIdentity;
    size_t m_Bytes;
    std::vector<String> m_Names;
  };
  typedef std::list<CachedTree> TreeList;

  XmlCache();
  // Answers a new name from the tree of the same file, if one is cached.
  bool share(const String& i_FileName, const Node*& o_pTree);
  TErrorCode load(const String& i_FileName, const Node*& o_pTree);
  void addEntry(const String& i_FileName, TreeList::iterator i_Tree);
  void markUsed(TreeList::iterator i_Tree);
  // Evicts trees, least recently used first and never i_Kept, until the budget is kept.
  void keepBudget(TreeList::iterator i_Kept);
  TreeList::iterator evict(TreeList::iterator i_Tree);

  TreeList m_Trees;  // least recently used first; owns the trees
  std::map<String, TreeList::iterator> m_Entries;
  std::map<FileIdentity, TreeList::iterator> m_TreesByFile;
  size_t m_HeldBytes;
  size_t m_Budget;  // NO_BUDGET when unbounded
  static XmlCache* m_Cache;
};

}  // namespace XmlPlugin
