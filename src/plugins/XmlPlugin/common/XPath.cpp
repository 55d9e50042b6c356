#include "XPath.h"

namespace XmlPlugin {

XPath::XPath(const String& i_XPath) : m_XPath(i_XPath) {}

XPath::~XPath() {}

TErrorCode XPath::getValues(XPathOutputElements& o_Output, Node* i_Root) {
  (void)o_Output;
  (void)i_Root;
  return 0;
}

}  // namespace XmlPlugin
