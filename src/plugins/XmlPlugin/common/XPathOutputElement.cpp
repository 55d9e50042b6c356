#include "XPathOutputElement.h"

namespace XmlPlugin {

void deleteOutputElements(XPathOutputElements& io_Elements) {
  for (XPathOutputElement* element : io_Elements) {
    delete element;
  }
  io_Elements.clear();
}

bool XPathOutputElement_comparator(const XPathOutputElement*& i_First,
                                   const XPathOutputElement*& i_Second) {
  return cmp()(i_First, i_Second);
}

}  // namespace XmlPlugin
