// Evaluates a location-path operand (one or more paths joined by "|") over a tree.
#pragma once

#include "XPathOutputElement.h"
#include "host/Node.h"
#include "host/String.h"
#include "host/Types.h"

namespace XmlPlugin {

class XPath {
 public:
  explicit XPath(const String& i_XPath);
  ~XPath();
  XPath(const XPath&) = delete;
  XPath& operator=(const XPath&) = delete;

  // Fills o_Output (which owns its items) with the matching items, sorted by document
  // order without duplicates. A null root gives 0 and leaves o_Output untouched.
  // Supported once per object.
  TErrorCode getValues(XPathOutputElements& o_Output, Node* i_Root);

 private:
  String m_XPath;
};

}  // namespace XmlPlugin
