// Queries over a cached tree, side by side with pugixml and libxml2 on the same texts.
//
// The plug-in's engine is run the way the plug-in runs a request: XPathEngine::start with
// the tree already in the document cache, then the host strings taken from the result.
// pugixml (whitespace text kept, like the host reader) compiles and evaluates an xpath_query
// per iteration, libxml2 evaluates with xmlXPathEvalExpression; both only touch their results.
// The flat documents exercise axes whose peers' answers differ from this engine's, so they
// are timed for this engine alone.
//   cmake --preset release && cmake --build --preset release --target query_bench
//   build/release/bin/query_bench --benchmark_filter=10MB
//   build/release/bin/query_bench --benchmark_filter=floor
#include <benchmark/benchmark.h>
#include <libxml/parser.h>
#include <libxml/tree.h>
#include <libxml/xpath.h>

#include <memory>
#include <pugixml.hpp>
#include <string>
#include <vector>

#include "TemporaryFile.h"
#include "XPathEngine.h"
#include "XPathOutputElement.h"
#include "XmlCache.h"
#include "host/Node.h"

using namespace XmlPlugin;

namespace {

const size_t MEGABYTE = 1024 * 1024;

struct Catalogue {
  std::unique_ptr<TemporaryFile> m_File;
  size_t m_Books = 0;
};

// <catalog><book id="bkN" lang="en|fr"><title/><author/><year/><price/></book>...
Catalogue catalogue(size_t i_Megabytes) {
  Catalogue result;
  std::string text = "<?xml version=\"1.0\"?>\n<catalog>\n";
  for (; text.size() < i_Megabytes * MEGABYTE; ++result.m_Books) {
    const std::string number = std::to_string(result.m_Books);
    text += "  <book id=\"bk" + number + "\" lang=\"" + (result.m_Books % 3 == 0 ? "fr" : "en") +
            "\">\n    <title>Title " + number + "</title>\n    <author>Author " +
            std::to_string(result.m_Books % 1000) + "</author>\n    <year>" +
            std::to_string(1950 + result.m_Books % 70) + "</year>\n    <price>" +
            std::to_string(result.m_Books % 97) + ".25</price>\n  </book>\n";
  }
  text += "</catalog>\n";
  result.m_File =
      std::make_unique<TemporaryFile>("querybench-" + std::to_string(i_Megabytes) + "MB", text);
  return result;
}

// <r> with i_Children empty <a/> children.
std::unique_ptr<TemporaryFile> flat(size_t i_Children) {
  std::string text = "<r>";
  for (size_t i = 0; i < i_Children; ++i) {
    text += "<a/>";
  }
  text += "</r>";
  return std::make_unique<TemporaryFile>("querybench-flat" + std::to_string(i_Children), text);
}

void runPlugin(benchmark::State& io_State, const std::string& i_Path, const std::string& i_XPath) {
  const String fileName(i_Path.c_str());
  const String xpath(i_XPath.c_str());
  XPathEngine engine;
  size_t values = 0;
  for (auto _ : io_State) {
    XPathOutputElements output;
    OutputElementsGuard owner(output);
    if (engine.start(xpath, fileName, output) != 0) {
      io_State.SkipWithError("refused");
      break;
    }
    std::vector<String> hostValues;
    hostValues.reserve(output.size());
    for (const XPathOutputElement* pElement : output) {
      hostValues.push_back(pElement->hostValue());
    }
    values = hostValues.size();
  }
  io_State.counters["values"] = static_cast<double>(values);
}

void runPugixml(benchmark::State& io_State, const std::string& i_Path, const std::string& i_XPath) {
  pugi::xml_document document;
  if (!document.load_file(i_Path.c_str(), pugi::parse_default | pugi::parse_ws_pcdata)) {
    io_State.SkipWithError("not loaded");
    return;
  }
  size_t values = 0;
  for (auto _ : io_State) {
    const pugi::xpath_query query(i_XPath.c_str());
    if (query.return_type() != pugi::xpath_type_node_set) {
      benchmark::DoNotOptimize(query.evaluate_string(document));
      values = 1;
      continue;
    }
    const pugi::xpath_node_set nodes = query.evaluate_node_set(document);
    for (const pugi::xpath_node& node : nodes) {
      benchmark::DoNotOptimize(node.node() ? node.node().value() : node.attribute().value());
    }
    values = nodes.size();
  }
  io_State.counters["values"] = static_cast<double>(values);
}

void runLibXml2(benchmark::State& io_State, const std::string& i_Path, const std::string& i_XPath) {
  std::unique_ptr<xmlDoc, void (*)(xmlDoc*)> document(
      xmlReadFile(i_Path.c_str(), nullptr, XML_PARSE_NONET), xmlFreeDoc);
  if (!document) {
    io_State.SkipWithError("not loaded");
    return;
  }
  std::unique_ptr<xmlXPathContext, void (*)(xmlXPathContext*)> context(
      xmlXPathNewContext(document.get()), xmlXPathFreeContext);
  const xmlChar* pXPath = reinterpret_cast<const xmlChar*>(i_XPath.c_str());
  size_t values = 0;
  for (auto _ : io_State) {
    xmlXPathObject* pResult = xmlXPathEvalExpression(pXPath, context.get());
    if (pResult == nullptr) {
      io_State.SkipWithError("refused");
      break;
    }
    values = pResult->type == XPATH_NODESET
                 ? static_cast<size_t>(xmlXPathNodeSetGetLength(pResult->nodesetval))
                 : 1;
    xmlXPathFreeObject(pResult);
  }
  io_State.counters["values"] = static_cast<double>(values);
}

// The floor under a search in depth over the host's tree: a walk that asks every child its kind
// and every element its children and its name through the host's calls, as the engine must,
// and counts the matches, with nothing else done.
size_t countHostElements(const Node* i_pNode, const String& i_Name) {
  size_t count = i_pNode->m_Name == i_Name ? 1 : 0;
  const NodeList* pChildren = nullptr;
  if (i_pNode->getChildren(&pChildren) == 0 && pChildren != nullptr) {
    for (const Node* pChild : *pChildren) {
      if (pChild->getType() == ElementNode) {
        count += countHostElements(pChild, i_Name);
      }
    }
  }
  return count;
}

void walkHostTree(benchmark::State& io_State, const std::string& i_Path) {
  const Node* pTree = nullptr;
  if (XmlCache::get()->getXmlTree(String(i_Path.c_str()), pTree) != 0 || pTree == nullptr) {
    io_State.SkipWithError("not loaded");
    return;
  }
  const String name(L"book");
  size_t matches = 0;
  for (auto _ : io_State) {
    matches = countHostElements(pTree, name);
    benchmark::DoNotOptimize(matches);
  }
  io_State.counters["values"] = static_cast<double>(matches);
}

void registerQuery(const std::string& i_Group, const std::string& i_Path,
                   const std::string& i_XPath, bool i_WithPeers) {
  const std::string name = i_Group + " " + i_XPath;
  benchmark::RegisterBenchmark((name + " | XmlPlugin").c_str(), runPlugin, i_Path, i_XPath)
      ->Unit(benchmark::kMillisecond);
  if (!i_WithPeers) {
    return;
  }
  benchmark::RegisterBenchmark((name + " | pugixml").c_str(), runPugixml, i_Path, i_XPath)
      ->Unit(benchmark::kMillisecond);
  benchmark::RegisterBenchmark((name + " | libxml2").c_str(), runLibXml2, i_Path, i_XPath)
      ->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  std::vector<Catalogue> catalogues;
  for (size_t megabytes : {1, 10}) {
    catalogues.push_back(catalogue(megabytes));
    const Catalogue& source = catalogues.back();
    const std::string group = std::to_string(megabytes) + "MB";
    const std::string middle = "bk" + std::to_string(source.m_Books / 2);
    for (const std::string& xpath :
         {std::string("/catalog/book/title"), "//book[@id='" + middle + "']/price",
          std::string("count(//book)"), std::string("/catalog/book/@id"),
          std::string("//book[@lang='fr']/title"), std::string("//title/text()"),
          std::string("sum(/catalog/book/price)"), std::string("/catalog/book[year>2000]/title")}) {
      registerQuery(group, source.m_File->path(), xpath, true);
    }
    benchmark::RegisterBenchmark(("floor " + group + " walk to every book | host tree").c_str(),
                                 walkHostTree, source.m_File->path())
        ->Unit(benchmark::kMillisecond);
  }
  std::vector<std::unique_ptr<TemporaryFile>> flats;
  for (size_t children : {10000, 100000}) {
    flats.push_back(flat(children));
    const std::string group = "flat" + std::to_string(children / 1000) + "k";
    for (const char* xpath :
         {"/r/a/ancestor::r", "/r/a/..", "/r/a[1]", "/r/a[last()]", "/r/a[position() = 5]"}) {
      registerQuery(group, flats.back()->path(), xpath, false);
    }
  }
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  XmlCache::cleanup();
  return 0;
}
