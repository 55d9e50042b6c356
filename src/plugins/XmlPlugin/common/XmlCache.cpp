#include "XmlCache.h"

#include "XmlFileParser.h"
#include "XmlNodeSink.h"
#include "XmlPluginConstants.h"

namespace XmlPlugin {

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

XmlCache::~XmlCache() = default;

TErrorCode XmlCache::getXmlTree(const String& i_FileName, const Node*& o_pTree) {
  o_pTree = nullptr;
  const auto cached = m_Trees.find(i_FileName);
  if (cached != m_Trees.end()) {
    // Deliberately never looks at the file again: later changes are not seen.
    o_pTree = cached->second.get();
    return 0;
  }
  XmlNodeSink sink;
  const XmlFileParser parser(i_FileName, sink);
  if (parser.getStatus() != 0) {
    // Not cached: the next request tries the file again.
    return XML_PLUGIN_ERROR_UNABLE_TO_PARSE_XML_FILE;
  }
  // A successful parse without a tree is stored as a null root, which callers report.
  std::unique_ptr<Node> tree(sink.getRootNode());
  o_pTree = m_Trees.emplace(i_FileName, std::move(tree)).first->second.get();
  return 0;
}

}  // namespace XmlPlugin
