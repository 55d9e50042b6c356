// Candidate lists whose nodes come from, and go back to, a store kept by each thread.
//
// Predicates judge their candidates in lists (std::list<Node*>), one heap block per candidate:
// a search in depth lists every element that passes a name test once, and the heap's slow path
// then costs as much as judging the candidate. The store is bounded (about 4 MB a thread) and
// given back when the thread ends; under AddressSanitizer nothing is kept, so that it still
// sees every list node used after it was freed.
#pragma once

#include <list>

#include "host/Node.h"

namespace XmlPlugin {

namespace XPathNodeListSpare {

// Appends i_pNode to io_List, in a list node the thread kept when there is one.
void append(std::list<Node*>& io_List, Node* i_pNode);

// Empties io_List, keeping its list nodes for later lists as far as the bound allows.
void recycle(std::list<Node*>& io_List);

}  // namespace XPathNodeListSpare

}  // namespace XmlPlugin
