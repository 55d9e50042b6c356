// Feeds the input, read as UTF-8 text, to the expression engine as one XPath expression and
// evaluates it over a small fixed document that has every node kind the engine meets.
#include <cstddef>
#include <cstdint>
#include <string>

#include "EngineAnswer.h"
#include "TestXml.h"

namespace {

const char* const DOCUMENT =
    "<?xml version=\"1.0\"?>\n"
    "<library name=\"city\" open=\"1\">\n"
    "  <!-- shelves -->\n"
    "  <shelf id=\"a\" floor=\"2\">\n"
    "    <book lang=\"en\" price=\"12.5\"><title>Dune</title><year>1965</year></book>\n"
    "    <book lang=\"fr\" price=\"-3\"><title>Vol de nuit</title><year>1931</year></book>\n"
    "    <?shelve order=\"asc\"?>\n"
    "  </shelf>\n"
    "  <shelf id=\"b\"><book><title>NaN</title><year/></book>mixed &amp; text</shelf>\n"
    "  <x:note xmlns:x=\"urn:x\">  spaced  </x:note>\n"
    "</library>\n";

Node* document() {
  static const std::unique_ptr<Node> s_pTree = TestXml::parseXml(DOCUMENT);
  return s_pTree.get();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* i_pData, size_t i_Size) {
  Node* pRoot = document();
  if (pRoot == nullptr) {
    __builtin_trap();
  }
  // The engine receives expressions as host strings, which end at the first zero.
  const std::string text(reinterpret_cast<const char*>(i_pData), i_Size);
  XmlPlugin::XPathExpressionsParser parser{String(text.c_str())};
  XmlPlugin::XPathEvaluationContext context;
  // Writing every result lets the sanitizers check what the items point at.
  parserAnswer(parser, pRoot, context);
  return 0;
}
