#include "TreeBuilder.h"

#include <algorithm>
#include <cstring>
#include <utility>

#include "host/NodeReader.h"

namespace {

// A plain test rather than a search of a set: it runs once per character of every text.
bool isXmlSpace(char i_Char) {
  return i_Char == ' ' || i_Char == '\n' || i_Char == '\t' || i_Char == '\r';
}

// The text without the white space around it; empty when it is all white space.
std::string_view trimmed(std::string_view i_Text) {
  size_t begin = 0;
  size_t end = i_Text.size();
  while (begin < end && isXmlSpace(i_Text[begin])) {
    ++begin;
  }
  while (end > begin && isXmlSpace(i_Text[end - 1])) {
    --end;
  }
  return i_Text.substr(begin, end - begin);
}

int32_t countAttributes(const char** i_Attributes) {
  int32_t count = 0;
  while (i_Attributes[2 * count] != nullptr) {
    ++count;
  }
  return count;
}

}  // namespace

TreeBuilder::TreeBuilder(const TreeOptions& i_Options)
    : m_Options(i_Options),
      m_pStorage(new TreeArena),
      m_TextLength(0),
      m_NextIndex(0),
      m_NodeCount(0) {}

bool TreeBuilder::refuse(const String& i_Reason) {
  if (m_Failure.isEmpty()) {
    m_Failure = i_Reason;
  }
  return false;
}

bool TreeBuilder::decode(std::string_view i_Bytes, String& o_Text) {
  return m_pStorage->decode(i_Bytes, o_Text) || refuse(String(L"invalid UTF-8 sequence"));
}

bool TreeBuilder::readValue(std::string_view i_Bytes, String& o_Value) {
  // Short values repeat a lot ("en", "true", "0"); sharing them keeps the tree small.
  if (i_Bytes.empty() || i_Bytes.size() > ValueCache::Key::MAX_BYTES) {
    return decode(i_Bytes, o_Value);
  }
  const ValueCache::Key key(i_Bytes);
  if (const void* pKept = m_RecentValues.find(key)) {
    o_Value = TreeArena::fromHandle(pKept);
    return true;
  }
  if (!decode(i_Bytes, o_Value)) {
    return false;
  }
  m_RecentValues.keep(key, TreeArena::handleOf(o_Value));
  return true;
}

bool TreeBuilder::readName(const char* i_Name, String& o_Name) {
  const std::string_view bytes(i_Name);
  String& shared = m_Names.entry(bytes);
  if (shared.isEmpty() && !decode(bytes, shared)) {
    return false;
  }
  // An uncounted copy: counting every use of a name made each element wait on an atomic add.
  o_Name = TreeArena::fromHandle(TreeArena::handleOf(shared));
  return o_Name.length() <= NODE_READER_MAX_NAME_LENGTH ||
         refuse(String(L"name longer than " + std::to_wstring(NODE_READER_MAX_NAME_LENGTH) +
                       L" characters"));
}

StringMap* TreeBuilder::attributes(const char** i_Attributes, int32_t i_Count,
                                   int32_t i_FirstNumber) {
  if (i_Count == 0) {
    return noAttributes();
  }
  String* pStrings = m_pStorage->createMany<String>(2 * static_cast<size_t>(i_Count));
  for (int32_t i = 0; i < i_Count; ++i) {
    if (!readName(i_Attributes[2 * i], pStrings[i]) ||
        !readValue(i_Attributes[2 * i + 1], pStrings[i_Count + i])) {
      return nullptr;
    }
  }
  return m_pStorage->create<StringMap>(pStrings, pStrings + i_Count, i_Count, i_FirstNumber);
}

bool TreeBuilder::startElement(const char* i_Name, const char** i_Attributes) {
  if (!flushText()) {
    return false;
  }
  if (m_OpenElements.size() >= static_cast<size_t>(NODE_READER_MAX_DEPTH)) {
    return refuse(String(L"elements nested deeper than " + std::to_wstring(NODE_READER_MAX_DEPTH) +
                         L" levels"));
  }
  const int32_t attributeCount = countAttributes(i_Attributes);
  if (attributeCount > NODE_READER_MAX_ATTRIBUTES) {
    return refuse(String(L"more than " + std::to_wstring(NODE_READER_MAX_ATTRIBUTES) +
                         L" attributes on one element"));
  }
  String name;
  if (!readName(i_Name, name)) {
    return false;
  }
  // The numbers right after the element's own belong to its attributes.
  const int32_t index = m_NextIndex;
  StringMap* pAttributes = attributes(i_Attributes, attributeCount, index + 1);
  if (pAttributes == nullptr) {
    return false;
  }
  m_NextIndex += 1 + attributeCount;
  Node* pElement = nullptr;
  if (m_OpenElements.empty()) {
    if (m_pRoot) {
      return refuse(String(L"more than one root element"));
    }
    m_pRoot.reset(new DocumentRoot(name, index, pAttributes));
    ++m_NodeCount;
    pElement = m_pRoot.get();
  } else {
    pElement = newChild(ElementNode, std::move(name), index, pAttributes);
  }
  m_OpenElements.push_back(OpenElement{pElement, m_Children.size()});
  return true;
}

bool TreeBuilder::endElement() {
  if (!flushText()) {
    return false;
  }
  if (m_OpenElements.empty()) {
    return refuse(String(L"end of an element that was not started"));
  }
  const OpenElement closed = m_OpenElements.back();
  m_OpenElements.pop_back();
  const size_t count = m_Children.size() - closed.m_FirstChild;
  if (count > 0) {
    Node* const* pChildren = m_pStorage->copy(m_Children.data() + closed.m_FirstChild, count);
    closed.m_pElement->setChildren(m_pStorage->create<NodeList>(pChildren, count));
    m_Children.resize(closed.m_FirstChild);
  }
  return true;
}

bool TreeBuilder::characters(const char* i_Text, int i_Length) {
  // Outside the root element there is only white space, which no node keeps.
  if (m_OpenElements.empty()) {
    return true;
  }
  // Appended without a call in the common cases: a line break or a reference comes as one
  // byte, and the storage only grows.
  const size_t length = static_cast<size_t>(i_Length);
  if (m_TextLength + length > m_Text.size()) {
    m_Text.resize(std::max(2 * m_Text.size(), m_TextLength + length));
  }
  if (length == 1) {
    m_Text[m_TextLength] = *i_Text;
  } else {
    std::memcpy(&m_Text[m_TextLength], i_Text, length);
  }
  m_TextLength += length;
  return true;
}

bool TreeBuilder::comment(const char* i_Text) {
  if (skips()) {
    return true;
  }
  if (!flushText()) {
    return false;
  }
  String text;
  if (!decode(i_Text, text)) {
    return false;
  }
  newChild(CommentNode, std::move(text), m_NextIndex++, noAttributes());
  return true;
}

bool TreeBuilder::processingInstruction(const char* i_Target) {
  if (skips()) {
    return true;
  }
  if (!flushText()) {
    return false;
  }
  String target;
  if (!readName(i_Target, target)) {
    return false;
  }
  newChild(ProcessingInstructionNode, std::move(target), m_NextIndex++, noAttributes());
  return true;
}

bool TreeBuilder::skips() const {
  // Checked before the pending text is flushed, so a skipped node does not split it.
  return m_OpenElements.empty() || m_Options.m_SkipComments;
}

Node* TreeBuilder::newChild(int i_Type, String i_Name, int32_t i_Index, StringMap* i_pAttributes) {
  Node* pChild = m_pStorage->create<Node>(i_Type, String(), i_Index, i_pAttributes,
                                          m_OpenElements.back().m_pElement);
  ++m_NodeCount;
  // Moved in rather than copied: a copy would touch the shared buffer's count twice.
  pChild->m_Name = std::move(i_Name);
  m_Children.push_back(pChild);
  return pChild;
}

bool TreeBuilder::flushText() {
  if (m_TextLength == 0) {
    return true;
  }
  const std::string_view text(m_Text.data(), m_TextLength);
  const std::string_view inner = trimmed(text);
  bool accepted = true;
  if (!inner.empty() || m_Options.m_KeepBlankText) {
    Node* pNode = newChild(TextNode, String(), m_NextIndex++, noAttributes());
    accepted = readValue(m_Options.m_TrimText ? inner : text, pNode->m_Name);
  }
  m_TextLength = 0;
  return accepted;
}

std::unique_ptr<DocumentRoot> TreeBuilder::finish() {
  if (!m_Failure.isEmpty() || !m_OpenElements.empty() || !m_pRoot) {
    return nullptr;
  }
  m_pStorage->trim();
  m_pRoot->adopt(std::move(m_pStorage), m_NodeCount);
  return std::move(m_pRoot);
}
