// The process-wide cache of parsed documents, keyed by the file name exactly as given.
#pragma once

#include <map>
#include <memory>

#include "host/Node.h"
#include "host/String.h"
#include "host/Types.h"

namespace XmlPlugin {

class XmlCache {
 public:
  // The one instance, created empty on first use.
  static XmlCache* get();
  // Deletes the instance and every tree in it; nothing when there is none.
  static void cleanup();

  // The tree of the file, loading it on first use. The tree stays owned by the cache and
  // valid until cleanup(). A failed load is not cached: -15103.
  TErrorCode getXmlTree(const String& i_FileName, const Node*& o_pTree);

  virtual ~XmlCache();

 private:
  XmlCache() = default;
  std::map<String, std::unique_ptr<Node>> m_Trees;  // null for a file read without a tree
  static XmlCache* m_Cache;
};

}  // namespace XmlPlugin
