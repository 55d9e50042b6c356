// Cost of tokenizing and of evaluating expressions without location paths.
//   cmake --preset release && cmake --build --preset release --target plugin_bench
//   build/release/bin/plugin_bench
#include <benchmark/benchmark.h>

#include <string>

#include "XPathEvaluationContext.h"
#include "XPathExpressionsParser.h"
#include "XPathTokenizer.h"

using namespace XmlPlugin;

namespace {

const char* const kPlain = "concat('a', 'b') = 'ab' and 1 + 2 * 3 > 6";

std::string nested(int i_Depth) {
  return std::string(i_Depth, '(') + "1 + 2" + std::string(i_Depth, ')');
}

std::string sum(int i_Terms) {
  std::string text = "1";
  for (int i = 1; i < i_Terms; ++i) {
    text += " + 1";
  }
  return text;
}

void tokenize(benchmark::State& io_State, const std::string& i_XPath) {
  const String xpath(i_XPath.c_str());
  for (auto _ : io_State) {
    XPathTokenizer tokenizer(xpath);
    if (tokenizer.start() != 0) {
      io_State.SkipWithError("rejected");
      break;
    }
    benchmark::DoNotOptimize(tokenizer.releaseItems());
  }
}

// Tokenizing, conversion to postfix, evaluation and shaping of the result.
void evaluate(benchmark::State& io_State, const std::string& i_XPath) {
  const String xpath(i_XPath.c_str());
  for (auto _ : io_State) {
    XPathExpressionsParser parser(xpath);
    XPathOutputElements values;
    OutputElementsGuard guard(values);
    XPathEvaluationContext context;
    if (parser.runParser(nullptr, context) != 0 || parser.getValues(values) != 0) {
      io_State.SkipWithError("failed");
      break;
    }
  }
}

}  // namespace

BENCHMARK_CAPTURE(tokenize, plain, std::string(kPlain));
BENCHMARK_CAPTURE(tokenize, nested20, nested(20));
BENCHMARK_CAPTURE(tokenize, nested50, nested(50));
BENCHMARK_CAPTURE(tokenize, nested200, nested(200));
BENCHMARK_CAPTURE(tokenize, sum10000, sum(10000));
BENCHMARK_CAPTURE(evaluate, plain, std::string(kPlain));
BENCHMARK_CAPTURE(evaluate, nested20, nested(20));
BENCHMARK_CAPTURE(evaluate, nested50, nested(50));
BENCHMARK_CAPTURE(evaluate, nested200, nested(200));
BENCHMARK_CAPTURE(evaluate, sum10000, sum(10000));
