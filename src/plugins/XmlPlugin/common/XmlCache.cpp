#include "XmlCache.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iterator>

#include "PluginTracer.h"
#include "XmlFileParser.h"
#include "XmlNodeSink.h"
#include "XmlPluginConstants.h"
#include "host/Trace.h"

namespace XmlPlugin {
namespace {

const size_t NO_BUDGET = SIZE_MAX;

// The budget that XMLPLUGIN_CACHE_MAX_MB sets, in MiB (fractions allowed); none when unset.
size_t budgetFromEnvironment() {
  const char* pValue = std::getenv("XMLPLUGIN_CACHE_MAX_MB");
  if (pValue == nullptr || *pValue == '\0') {
    return NO_BUDGET;
  }
  char* pEnd = nullptr;
  const double megabytes = std::strtod(pValue, &pEnd);
  // A budget past a petabyte is no budget.
  if (*pEnd != '\0' || !(megabytes >= 0) || megabytes > 1e9) {
    Trace trace(pluginTracer(), "XmlCache::XmlCache");
    HOST_TRACE(trace, 1) << "XMLPLUGIN_CACHE_MAX_MB is not a number of MiB: [" << pValue
                         << "]; the cache is not bounded";
    return NO_BUDGET;
  }
  return static_cast<size_t>(std::floor(megabytes * 1024 * 1024));
}

}  // namespace

XmlCache* XmlCache::m_Cache = nullptr;

XmlCache* XmlCache::get() {
  if (m_Cache == nullptr) {
    m_Cache = new XmlCache();
  }
  return m_Cache;
}

void XmlCache::cleanup() {
  delete m_Cache;
  m_Cache = nullptr;
}

XmlCache::XmlCache() : m_HeldBytes(0), m_Budget(budgetFromEnvironment()) {}

XmlCache::~XmlCache() = default;

TErrorCode XmlCache::getXmlTree(const String& i_FileName, const Node*& o_pTree) {
  o_pTree = nullptr;
  const auto entry = m_Entries.find(i_FileName);
  if (entry != m_Entries.end()) {
    // Deliberately never looks at the file again: later changes are not seen.
    markUsed(entry->second);
    o_pTree = entry->second->m_pRoot.get();
    return 0;
  }
  if (share(i_FileName, o_pTree)) {
    return 0;
  }
  return load(i_FileName, o_pTree);
}

bool XmlCache::share(const String& i_FileName, const Node*& o_pTree) {
  FileIdentity identity;
  if (!File(i_FileName).identity(identity)) {
    return false;
  }
  const auto same = m_TreesByFile.find(identity);
  if (same == m_TreesByFile.end()) {
    return false;
  }
  const TreeList::iterator tree = same->second;
  addEntry(i_FileName, tree);
  markUsed(tree);
  Trace trace(pluginTracer(), "XmlCache::getXmlTree");
  HOST_TRACE(trace, 3) << "The XML file " << i_FileName << " shares the tree loaded as "
                       << tree->m_Names.front();
  o_pTree = tree->m_pRoot.get();
  return true;
}

TErrorCode XmlCache::load(const String& i_FileName, const Node*& o_pTree) {
  XmlNodeSink sink;
  const XmlFileParser parser(i_FileName, sink);
  if (parser.getStatus() != 0) {
    // Not cached: the next request tries the file again.
    return XML_PLUGIN_ERROR_UNABLE_TO_PARSE_XML_FILE;
  }
  // A successful parse without a tree is stored as a null root, which callers report.
  std::unique_ptr<Node> pRoot(sink.getRootNode());
  Trace trace(pluginTracer(), "XmlCache::getXmlTree");
  HOST_TRACE(trace, 3) << "Loaded the XML file " << i_FileName << ": "
                       << static_cast<unsigned long>(parser.getTreeBytes()) << " bytes, "
                       << static_cast<unsigned long>(parser.getNodeCount()) << " nodes";
  m_Trees.push_back(
      CachedTree{std::move(pRoot), parser.getFileIdentity(), parser.getTreeBytes(), {i_FileName}});
  const TreeList::iterator tree = std::prev(m_Trees.end());
  m_HeldBytes += tree->m_Bytes;
  m_Entries.emplace(i_FileName, tree);
  // A file replaced by one already cached while it was read keeps the tree found first.
  m_TreesByFile.emplace(tree->m_FileIdentity, tree);
  if (tree->m_Bytes > m_Budget) {
    // Answered now, and the first to go when another tree needs the room.
    m_Trees.splice(m_Trees.begin(), m_Trees, tree);
  }
  keepBudget(tree);
  o_pTree = tree->m_pRoot.get();
  return 0;
}

void XmlCache::addEntry(const String& i_FileName, TreeList::iterator i_Tree) {
  i_Tree->m_Names.push_back(i_FileName);
  m_Entries.emplace(i_FileName, i_Tree);
}

void XmlCache::markUsed(TreeList::iterator i_Tree) {
  m_Trees.splice(m_Trees.end(), m_Trees, i_Tree);
}

void XmlCache::keepBudget(TreeList::iterator i_Kept) {
  for (TreeList::iterator tree = m_Trees.begin();
       m_HeldBytes > m_Budget && tree != m_Trees.end();) {
    tree = tree == i_Kept ? std::next(tree) : evict(tree);
  }
}

XmlCache::TreeList::iterator XmlCache::evict(TreeList::iterator i_Tree) {
  Trace trace(pluginTracer(), "XmlCache::getXmlTree");
  HOST_TRACE(trace, 3) << "Evicted the tree of the XML file " << i_Tree->m_Names.front() << " ("
                       << static_cast<unsigned long>(i_Tree->m_Bytes) << " bytes) to stay within "
                       << static_cast<unsigned long>(m_Budget) << " bytes";
  for (const String& name : i_Tree->m_Names) {
    m_Entries.erase(name);
  }
  const auto indexed = m_TreesByFile.find(i_Tree->m_FileIdentity);
  if (indexed != m_TreesByFile.end() && indexed->second == i_Tree) {
    m_TreesByFile.erase(indexed);
  }
  m_HeldBytes -= i_Tree->m_Bytes;
  return m_Trees.erase(i_Tree);
}

}  // namespace XmlPlugin
