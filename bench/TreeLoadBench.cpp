// Load time and heap held per MB of XML: the host NodeReader tree against libxml2 (xmlReadFile)
// and pugixml, on a generated catalogue document of 1, 10 and 48 MB. Blank text is dropped by
// all three; pugixml is also measured keeping it, and Expat parsing the file, without handlers
// and with handlers that do nothing, shows the floor under the host reader. The heap counter is the
// bytes a loaded tree holds (malloc'd and mapped), divided by the file size; the timing covers
// loading only (freeing the tree is outside the timed region). Between loads the freed memory goes
// back to the system, so that every load pays for fresh pages: a document cache loads each file
// once, into memory the process had not used, and a heap reused from the last load would hide that.
//   build/release/bin/tree_load_bench
#include <benchmark/benchmark.h>
#include <expat.h>
#include <fcntl.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <malloc.h>

#include <map>
#include <memory>
#include <pugixml.hpp>
#include <string>

#include "TemporaryFile.h"
#include "host/Node.h"
#include "host/NodeReader.h"

namespace {

const size_t MEGABYTE = 1024 * 1024;

// A catalogue of about i_Megabytes MB.
std::string catalogue(size_t i_Megabytes) {
  std::string text = "<?xml version=\"1.0\"?>\n<catalog>\n";
  for (size_t item = 0; text.size() < i_Megabytes * MEGABYTE; ++item) {
    const std::string number = std::to_string(item);
    text += "  <item id=\"" + number + "\" kind=\"" + (item % 3 == 0 ? "book" : "disc") +
            "\">\n    <name>Item " + number + "</name>\n    <price>" + std::to_string(item % 97) +
            ".50</price>\n    <tags><tag>alpha</tag><tag>beta" +
            "</tag></tags>\n    <note>Kept &amp; shipped in order " + number +
            "</note>\n  </item>\n";
  }
  text += "</catalog>\n";
  return text;
}

const TemporaryFile& document(size_t i_Megabytes) {
  static std::map<size_t, std::unique_ptr<TemporaryFile>> documents;
  std::unique_ptr<TemporaryFile>& pDocument = documents[i_Megabytes];
  if (!pDocument) {
    pDocument = std::make_unique<TemporaryFile>("treeload-" + std::to_string(i_Megabytes),
                                                catalogue(i_Megabytes));
  }
  return *pDocument;
}

class TreeSink : public NodeSink {
 public:
  TErrorCode onNodeTree(Node* i_pTree) override {
    m_Tree.reset(i_pTree);
    return 0;
  }
  std::unique_ptr<Node> m_Tree;
};

// The host tree maps its large blocks, which the heap does not see: the reader tells its size.
size_t s_HostTreeBytes = 0;

std::unique_ptr<Node> loadHost(const std::string& i_Path) {
  TreeSink sink;
  NodeReader reader(sink);
  reader.m_MaxFileSize = 0;
  reader.m_KeepBlankText = 0;
  reader.m_SkipComments = 0;
  reader.m_TrimText = 0;
  reader.m_ChunkSize = 0;
  reader.process(String(i_Path.c_str()), 0);
  s_HostTreeBytes = reader.m_TreeBytes;
  return reader.m_Status == 0 ? std::move(sink.m_Tree) : nullptr;
}

struct XmlDocFree {
  void operator()(xmlDoc* i_pDoc) const { xmlFreeDoc(i_pDoc); }
};

std::unique_ptr<xmlDoc, XmlDocFree> loadLibXml2(const std::string& i_Path) {
  return std::unique_ptr<xmlDoc, XmlDocFree>(
      xmlReadFile(i_Path.c_str(), nullptr, XML_PARSE_NONET | XML_PARSE_NOBLANKS));
}

template <unsigned Options>
std::unique_ptr<pugi::xml_document> loadPugixml(const std::string& i_Path) {
  auto pDocument = std::make_unique<pugi::xml_document>();
  return pDocument->load_file(i_Path.c_str(), Options) ? std::move(pDocument) : nullptr;
}

struct ParserFree {
  void operator()(XML_ParserStruct* i_pParser) const { XML_ParserFree(i_pParser); }
};

void XMLCALL ignoreStart(void*, const XML_Char*, const XML_Char**) {}
void XMLCALL ignoreEnd(void*, const XML_Char*) {}
void XMLCALL ignoreCharacters(void*, const XML_Char*, int) {}

// Expat alone: the file read into Expat's buffer in one piece and parsed, without handlers or
// with element and character handlers that do nothing. Expat does more for a parser that has
// handlers (it gathers each text, and names every attribute), so the second is the floor under
// a tree built from Expat's events. What is "loaded" is the parser, so that the harness can
// treat it like a tree.
template <bool WithHandlers>
std::unique_ptr<XML_ParserStruct, ParserFree> parseExpat(const std::string& i_Path) {
  std::unique_ptr<XML_ParserStruct, ParserFree> pParser(XML_ParserCreate(nullptr));
  if (WithHandlers) {
    XML_SetElementHandler(pParser.get(), ignoreStart, ignoreEnd);
    XML_SetCharacterDataHandler(pParser.get(), ignoreCharacters);
  }
  const int descriptor = open(i_Path.c_str(), O_RDONLY | O_CLOEXEC);
  const off_t size = lseek(descriptor, 0, SEEK_END);
  void* pBuffer = XML_GetBuffer(pParser.get(), static_cast<int>(size));
  const bool parsed =
      pread(descriptor, pBuffer, static_cast<size_t>(size), 0) == size &&
      XML_ParseBuffer(pParser.get(), static_cast<int>(size), XML_TRUE) == XML_STATUS_OK;
  close(descriptor);
  return parsed ? std::move(pParser) : nullptr;
}

size_t heapInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

size_t heapHeld(size_t i_HeapGrowth) {
  return i_HeapGrowth;
}

size_t hostTreeHeld(size_t) {
  return s_HostTreeBytes;
}

template <typename Tree>
void TreeLoad(benchmark::State& io_State, Tree (*i_Load)(const std::string&),
              size_t (*i_Held)(size_t i_HeapGrowth) = heapHeld) {
  const TemporaryFile& source = document(static_cast<size_t>(io_State.range(0)));
  const size_t before = heapInUse();
  Tree held = i_Load(source.path());
  if (!held) {
    io_State.SkipWithError("the document was not loaded");
    return;
  }
  const double heldBytes = static_cast<double>(i_Held(heapInUse() - before));
  held.reset();

  for (auto _ : io_State) {
    Tree tree = i_Load(source.path());
    benchmark::DoNotOptimize(tree.get());
    io_State.PauseTiming();
    tree.reset();
    malloc_trim(0);
    io_State.ResumeTiming();
  }
  io_State.SetBytesProcessed(io_State.iterations() * static_cast<int64_t>(source.size()));
  io_State.counters["heap_MB_per_MB"] = heldBytes / static_cast<double>(source.size());
}

void sizes(benchmark::internal::Benchmark* io_pBenchmark) {
  io_pBenchmark->Arg(1)->Arg(10)->Arg(48)->Unit(benchmark::kMillisecond);
}

BENCHMARK_CAPTURE(TreeLoad, HostNodeReader, &loadHost, hostTreeHeld)->Apply(sizes);
BENCHMARK_CAPTURE(TreeLoad, ExpatNoHandlers, &parseExpat<false>)->Apply(sizes);
BENCHMARK_CAPTURE(TreeLoad, ExpatEmptyHandlers, &parseExpat<true>)->Apply(sizes);
BENCHMARK_CAPTURE(TreeLoad, LibXml2, &loadLibXml2)->Apply(sizes);
BENCHMARK_CAPTURE(TreeLoad, Pugixml, &loadPugixml<pugi::parse_default>)->Apply(sizes);
BENCHMARK_CAPTURE(TreeLoad, PugixmlBlankTextKept,
                  &loadPugixml<pugi::parse_default | pugi::parse_ws_pcdata>)
    ->Apply(sizes);

}  // namespace
