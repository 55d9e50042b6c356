// Builds a document's Node tree from the events of an XML parser.
//
// Events come in document order with UTF-8 text. The builder keeps the open elements on
// an explicit stack, so nesting depth costs no native stack. Names and short values
// are shared: every element of one name holds the same string. A method returns false when it
// refuses the document; failure() then says why, and the builder takes no further events.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "DocumentTree.h"
#include "StringPool.h"
#include "ValueCache.h"
#include "host/String.h"

struct TreeOptions {
  bool m_KeepBlankText;  // keep text made only of white space
  bool m_SkipComments;   // drop comments and processing instructions
  bool m_TrimText;       // trim white space around text
};

class TreeBuilder {
 public:
  explicit TreeBuilder(const TreeOptions& i_Options);

  // i_Attributes: name, value, name, value, ..., null.
  bool startElement(const char* i_Name, const char** i_Attributes);
  bool endElement();
  // Consecutive calls make one text (CDATA sections and references included).
  bool characters(const char* i_Text, int i_Length);
  bool comment(const char* i_Text);
  bool processingInstruction(const char* i_Target);
  // Refuses the document for a reason found by the caller.
  bool refuse(const String& i_Reason);

  // The finished tree, owning all its nodes; null when no root element was read or the
  // document was refused. Called once: a builder reads one document.
  std::unique_ptr<DocumentRoot> finish();

  const String& failure() const { return m_Failure; }

 private:
  struct OpenElement {
    Node* m_pElement;
    size_t m_FirstChild;  // index of its first child in m_Children
  };

  // Decodes UTF-8 text into the tree's storage.
  bool decode(std::string_view i_Bytes, String& o_Text);
  bool readName(const char* i_Name, String& o_Name);
  // Decodes a value, sharing the characters of an equal short value read before.
  bool readValue(std::string_view i_Bytes, String& o_Value);
  StringMap* attributes(const char** i_Attributes, int32_t i_Count, int32_t i_FirstNumber);
  // Whether comments and processing instructions are dropped here.
  bool skips() const;
  // Appends a new node to the innermost open element.
  Node* newChild(int i_Type, String i_Name, int32_t i_Index, StringMap* i_pAttributes);
  // Makes the text read since the last node into a text node.
  bool flushText();

  TreeOptions m_Options;
  std::unique_ptr<TreeArena> m_pStorage;
  std::unique_ptr<DocumentRoot> m_pRoot;
  std::vector<OpenElement> m_OpenElements;
  std::vector<Node*> m_Children;  // children of the open elements, innermost last
  StringPool m_Names;             // every name of the document, shared
  ValueCache m_RecentValues;      // short values, shared while they recur
  std::string m_Text;             // UTF-8 text since the last node: its first m_TextLength bytes
  size_t m_TextLength;
  int32_t m_NextIndex;
  size_t m_NodeCount;
  String m_Failure;
};
