// Test helpers: XML text into a host Node tree, and searches over such a tree.
#pragma once

#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "host/Node.h"
#include "host/NodeReader.h"
#include "host/String.h"

namespace TestXml {

// A temporary file holding the given bytes, removed when the object goes.
class TempFile {
 public:
  explicit TempFile(const std::string& i_Content, const std::string& i_Suffix = ".xml") {
    std::string pattern = temporaryDirectory() + "/xmltestXXXXXX" + i_Suffix;
    std::vector<char> name(pattern.begin(), pattern.end());
    name.push_back('\0');
    const int descriptor = mkstemps(name.data(), static_cast<int>(i_Suffix.size()));
    if (descriptor < 0) {
      return;
    }
    close(descriptor);
    m_Path = name.data();
    std::ofstream(m_Path, std::ios::binary) << i_Content;
  }
  ~TempFile() {
    if (!m_Path.empty()) {
      unlink(m_Path.c_str());
    }
  }
  TempFile(const TempFile&) = delete;
  TempFile& operator=(const TempFile&) = delete;

  // Empty when the file could not be made.
  const std::string& path() const { return m_Path; }

 private:
  static std::string temporaryDirectory() {
    const char* pDir = std::getenv("TMPDIR");
    return pDir != nullptr && *pDir != '\0' ? pDir : "/tmp";
  }
  std::string m_Path;
};

// A sink that keeps the tree and the last message it was told.
class KeepingSink : public NodeSink {
 public:
  TErrorCode onNodeTree(Node* i_pTree) override {
    m_Tree.reset(i_pTree);
    return 0;
  }
  TErrorCode onWarning(const String& i_Text, int i_Line) override { return keep(i_Text, i_Line); }
  TErrorCode onError(const String& i_Text, int i_Line) override { return keep(i_Text, i_Line); }
  TErrorCode onCriticalError(const String& i_Text, int i_Line) override {
    return keep(i_Text, i_Line);
  }

  std::unique_ptr<Node> m_Tree;
  std::wstring m_Message;
  int m_Line = -1;
  int m_Messages = 0;

 private:
  TErrorCode keep(const String& i_Message, int i_Line) {
    m_Message = i_Message.toWide();
    m_Line = i_Line;
    ++m_Messages;
    return 0;
  }
};

// The tree of the XML text read with default options, or null when the reader refuses it.
inline std::unique_ptr<Node> parseXml(const std::string& i_Xml) {
  TempFile file(i_Xml);
  KeepingSink sink;
  NodeReader reader(sink);
  reader.process(String(file.path().c_str()), 0);
  return reader.m_Status == 0 ? std::move(sink.m_Tree) : nullptr;
}

// The children of a node as a vector (empty for a childless node).
inline std::vector<Node*> children(const Node* i_pNode) {
  const NodeList* pChildren = nullptr;
  if (i_pNode == nullptr || i_pNode->getChildren(&pChildren) != 0 || pChildren == nullptr) {
    return {};
  }
  return std::vector<Node*>(pChildren->begin(), pChildren->end());
}

// The i_Nth (0-based) element named i_Name in document order, the root included; null when
// there is none.
inline const Node* findElement(const Node* i_pRoot, const wchar_t* i_Name, int i_Nth = 0) {
  std::vector<const Node*> pending;
  if (i_pRoot != nullptr) {
    pending.push_back(i_pRoot);
  }
  while (!pending.empty()) {
    const Node* pNode = pending.back();
    pending.pop_back();
    if (pNode->getType() == ElementNode && pNode->m_Name.compareTo(i_Name) == 0 && i_Nth-- == 0) {
      return pNode;
    }
    const std::vector<Node*> below = children(pNode);
    pending.insert(pending.end(), below.rbegin(), below.rend());
  }
  return nullptr;
}

// The text of an element as the engine sees it: its first text child ("" when none).
inline String elementText(const Node* i_pElement) {
  for (const Node* pChild : children(i_pElement)) {
    if (pChild->getType() == TextNode) {
      return pChild->m_Name;
    }
  }
  return String();
}

}  // namespace TestXml

using TestXml::elementText;
using TestXml::findElement;
using TestXml::parseXml;
