#include "TreeBuilder.h"

#include <cstring>

#include "Utf8.h"
#include "host/NodeReader.h"

namespace {

bool isBlank(const std::wstring& i_Text) {
  return i_Text.find_first_not_of(L" \t\r\n") == std::wstring::npos;
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
    : m_Options(i_Options), m_pStorage(new TreeStorage), m_NextIndex(0) {}

bool TreeBuilder::refuse(const String& i_Reason) {
  if (m_Failure.isEmpty()) {
    m_Failure = i_Reason;
  }
  return false;
}

bool TreeBuilder::decode(const char* i_Text, size_t i_Length, std::wstring& io_Text) {
  return HostUtf8::appendDecoded(i_Text, i_Length, io_Text) ||
         refuse(String(L"invalid UTF-8 sequence"));
}

bool TreeBuilder::internName(const char* i_Name, String& o_Name) {
  const std::string key(i_Name);
  const auto found = m_Names.find(key);
  if (found != m_Names.end()) {
    o_Name = found->second;
    return true;
  }
  m_Decoded.clear();
  if (!decode(key.data(), key.size(), m_Decoded)) {
    return false;
  }
  if (m_Decoded.size() > static_cast<size_t>(NODE_READER_MAX_NAME_LENGTH)) {
    return refuse(String(L"name longer than " + std::to_wstring(NODE_READER_MAX_NAME_LENGTH) +
                         L" characters"));
  }
  o_Name = m_Names.emplace(key, String(m_Decoded)).first->second;
  return true;
}

StringMap* TreeBuilder::attributes(const char** i_Attributes, int32_t i_Count,
                                   int32_t i_FirstNumber) {
  if (i_Count == 0) {
    return TreeStorage::noAttributes();
  }
  m_AttributeStrings.assign(2 * static_cast<size_t>(i_Count), String());
  for (int32_t i = 0; i < i_Count; ++i) {
    if (!internName(i_Attributes[2 * i], m_AttributeStrings[i])) {
      return nullptr;
    }
    const char* pValue = i_Attributes[2 * i + 1];
    m_Decoded.clear();
    if (!decode(pValue, std::strlen(pValue), m_Decoded)) {
      return nullptr;
    }
    m_AttributeStrings[i_Count + i] = String(m_Decoded);
  }
  const String* pStrings =
      m_pStorage->m_AttributeStrings.adopt(m_AttributeStrings.data(), m_AttributeStrings.size());
  return m_pStorage->m_AttributeMaps.create(pStrings, pStrings + i_Count, i_Count, i_FirstNumber);
}

bool TreeBuilder::startElement(const char* i_Name, const char** i_Attributes) {
  flushText();
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
  if (!internName(i_Name, name)) {
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
    pElement = m_pRoot.get();
  } else {
    pElement = m_pStorage->m_Nodes.create(ElementNode, name, index, pAttributes,
                                          m_OpenElements.back().m_pElement);
    m_Children.push_back(pElement);
  }
  m_OpenElements.push_back(OpenElement{pElement, m_Children.size()});
  return true;
}

bool TreeBuilder::endElement() {
  flushText();
  if (m_OpenElements.empty()) {
    return refuse(String(L"end of an element that was not started"));
  }
  const OpenElement closed = m_OpenElements.back();
  m_OpenElements.pop_back();
  const size_t count = m_Children.size() - closed.m_FirstChild;
  if (count > 0) {
    Node* const* pChildren =
        m_pStorage->m_ChildPointers.adopt(m_Children.data() + closed.m_FirstChild, count);
    closed.m_pElement->setChildren(m_pStorage->m_ChildLists.create(pChildren, count));
    m_Children.resize(closed.m_FirstChild);
  }
  return true;
}

bool TreeBuilder::characters(const char* i_Text, int i_Length) {
  // Outside the root element there is only white space, which no node keeps.
  return m_OpenElements.empty() || decode(i_Text, static_cast<size_t>(i_Length), m_Text);
}

bool TreeBuilder::comment(const char* i_Text) {
  if (skips()) {
    return true;
  }
  flushText();
  m_Decoded.clear();
  if (!decode(i_Text, std::strlen(i_Text), m_Decoded)) {
    return false;
  }
  addChild(CommentNode, String(m_Decoded));
  return true;
}

bool TreeBuilder::processingInstruction(const char* i_Target) {
  if (skips()) {
    return true;
  }
  flushText();
  String target;
  if (!internName(i_Target, target)) {
    return false;
  }
  addChild(ProcessingInstructionNode, target);
  return true;
}

bool TreeBuilder::skips() const {
  // Checked before the pending text is flushed, so a skipped node does not split it.
  return m_OpenElements.empty() || m_Options.m_SkipComments;
}

void TreeBuilder::addChild(int i_Type, const String& i_Name) {
  m_Children.push_back(m_pStorage->m_Nodes.create(i_Type, i_Name, m_NextIndex++,
                                                  TreeStorage::noAttributes(),
                                                  m_OpenElements.back().m_pElement));
}

void TreeBuilder::flushText() {
  if (m_Text.empty()) {
    return;
  }
  if (m_Options.m_KeepBlankText || !isBlank(m_Text)) {
    String text(m_Text);
    if (m_Options.m_TrimText) {
      text.trim();
    }
    addChild(TextNode, text);
  }
  m_Text.clear();
}

std::unique_ptr<Node> TreeBuilder::finish() {
  if (!m_Failure.isEmpty() || !m_OpenElements.empty() || !m_pRoot) {
    return nullptr;
  }
  m_pRoot->adopt(std::move(m_pStorage));
  return std::move(m_pRoot);
}
