#include "XPathExplainer.h"

#include "XPathExpressionsParser.h"
#include "XmlPlugin/XmlPluginErrors.h"

namespace XmlPlugin {

namespace {

// Verdicts told one by one in each predicate run; the rest are counted.
const size_t TOLD_VERDICTS = 3;
// Runs of one predicate told in full in each path; the rest are counted.
const size_t TOLD_PREDICATE_RUNS = 2;
// Values of the request listed; the rest are counted.
const size_t TOLD_VALUES = 10;

std::string narrow(const String& i_Text) {
  return i_Text.toNarrow();
}

std::string quoted(const String& i_Text) {
  return "`" + narrow(i_Text) + "`";
}

std::string listItems(const std::vector<XPathExpression*>& i_Items) {
  std::string text;
  for (const XPathExpression* pItem : i_Items) {
    text += (text.empty() ? "" : " ") + quoted(pItem->GetExpression());
  }
  return text;
}

std::string counted(size_t i_Count, const char* i_Singular, const char* i_Plural) {
  return std::to_string(i_Count) + " " + (i_Count == 1 ? i_Singular : i_Plural);
}

// An element as a person finds it in the file: its name and first attribute.
std::string label(const Node& i_Node) {
  std::string text = "<" + narrow(i_Node.m_Name);
  String name;
  String value;
  if (i_Node.getType() == ElementNode && i_Node.m_Attributes != nullptr &&
      i_Node.m_Attributes->getEntry(0, name, value) == 0) {
    text += " " + narrow(name) + "=\"" + narrow(value) + "\"";
    if (i_Node.m_Attributes->m_Count > 1) {
      text += " ...";
    }
  }
  return text + ">";
}

std::string codeText(TErrorCode i_Code) {
  const char* pName = xmlPluginErrorName(i_Code);
  return "error " + std::to_string(i_Code) + (pName != nullptr ? std::string(" ") + pName : "");
}

const char* typeName(XPathDataType i_Type) {
  switch (i_Type) {
    case BooleanType:
      return "boolean";
    case StringType:
      return "string";
    case NumberType:
      return "number";
    case NodeSetType:
      return "node set";
  }
  return "";
}

// What a predicate's condition gave for one candidate, and why that keeps or drops it.
std::string verdict(const XPathExpressionsParser& i_Parser, long i_Position, TErrorCode i_Result,
                    bool i_Keep) {
  const XPathExpression* pValue = i_Parser.getResultExpression();
  if (i_Result != 0 || pValue == nullptr) {
    return codeText(i_Result != 0 ? i_Result : XML_PLUGIN_ERROR_XPATH_PARSER_ERROR);
  }
  switch (i_Parser.getXPathOutputType()) {
    case BooleanType:
      return std::string("boolean ") + (pValue->GetExpressionBool() == 1 ? "true" : "false");
    case StringType:
      return "string \"" + narrow(pValue->GetExpressionString()) + "\"";
    case NumberType:
      return "number " + narrow(pValue->GetExpressionString()) + ", position " +
             std::to_string(i_Position);
    case NodeSetType:
      return i_Keep ? "a node set" : "an empty node set";
  }
  return "";
}

}  // namespace

XPathExplainer::XPathExplainer(std::function<void(const std::string&)> i_WriteLine)
    : m_WriteLine(std::move(i_WriteLine)) {}

bool XPathExplainer::isQuiet() const {
  for (const Frame& frame : m_Frames) {
    if (frame.m_Quiet || (frame.m_Predicate && (frame.m_Brief || frame.m_Judged > 0))) {
      return true;
    }
  }
  return false;
}

void XPathExplainer::writeLine(const std::string& i_Text, size_t i_Outdent) const {
  // A path's lines stand under the prepared path they belong to: two levels.
  size_t levels = 0;
  for (const Frame& frame : m_Frames) {
    levels += frame.m_Predicate ? 1 : 2;
  }
  m_WriteLine(std::string(2 * (levels - i_Outdent), ' ') + i_Text);
}

void XPathExplainer::expressionStarted(const XPathExpressionsParser& i_Parser) {
  if (isQuiet()) {
    return;
  }
  writeLine("items: " + listItems(i_Parser.getSourceOrder()));
  writeLine("postfix: " + listItems(i_Parser.getExpressionsVector()));
}

void XPathExplainer::pathsPrepared(const String& i_Anchored, const std::vector<String>& i_Paths,
                                   const Node* i_pRoot) {
  Frame frame;
  frame.m_Quiet = isQuiet();
  if (!frame.m_Quiet) {
    writeLine("path " + quoted(i_Anchored) + " from " + label(*i_pRoot));
  }
  for (const String& path : i_Paths) {
    frame.m_Paths.push_back(narrow(path));
  }
  m_Frames.push_back(frame);
}

void XPathExplainer::pathStarted(const std::vector<String>& i_Steps) {
  Frame& path = m_Frames.back();
  tellSteps(path);
  if (!path.m_Quiet && path.m_Started < path.m_Paths.size()) {
    writeLine("prepared `" + path.m_Paths[path.m_Started] + "`", 1);
  }
  ++path.m_Started;
  path.m_Steps.clear();
  for (const String& step : i_Steps) {
    path.m_Steps.push_back(narrow(step));
  }
  path.m_Kept.assign(i_Steps.size(), std::set<const Node*>());
  path.m_Items = 0;
}

void XPathExplainer::itemsMade(size_t i_Items) {
  m_Frames.back().m_Items += i_Items;
}

void XPathExplainer::stepMatched(unsigned int i_Index, const Node* i_pNode, bool i_Marked) {
  Frame& path = m_Frames.back();
  if (!path.m_Quiet && !i_Marked && i_Index < path.m_Kept.size()) {
    path.m_Kept[i_Index].insert(i_pNode);
  }
}

void XPathExplainer::tellSteps(const Frame& i_Path) const {
  if (i_Path.m_Quiet || i_Path.m_Steps.empty()) {
    return;
  }
  const size_t leaf = i_Path.m_Steps.size() - 1;
  for (size_t index = 0; index < leaf; ++index) {
    writeLine("step " + std::to_string(index + 1) + " `" + i_Path.m_Steps[index] + "` kept " +
              counted(i_Path.m_Kept[index].size(), "node", "nodes"));
  }
  writeLine("leaf `" + i_Path.m_Steps[leaf] + "` made " + counted(i_Path.m_Items, "item", "items"));
}

void XPathExplainer::pathsEvaluated(const XPathOutputElements& i_Items, TErrorCode i_Result) {
  const Frame path = m_Frames.back();
  tellSteps(path);
  if (!path.m_Quiet) {
    for (const auto& runs : path.m_PredicateRuns) {
      if (runs.second.m_Runs > 0) {
        writeLine("predicate [" + runs.first + "] ran " +
                      counted(runs.second.m_Runs, "more time", "more times") + ": kept " +
                      std::to_string(runs.second.m_Kept) + " of " +
                      counted(runs.second.m_Candidates, "candidate", "candidates"),
                  1);
      }
    }
    writeLine("selected " + counted(i_Items.size(), "item", "items") +
                  (i_Result != 0 ? ", " + codeText(i_Result) : ""),
              1);
  }
  m_Frames.pop_back();
}

void XPathExplainer::predicateStarted(const String& i_Condition, size_t i_Candidates) {
  Frame frame;
  frame.m_Predicate = true;
  frame.m_Condition = narrow(i_Condition);
  frame.m_Candidates = i_Candidates;
  frame.m_Quiet = isQuiet();
  if (!m_Frames.empty() && !frame.m_Quiet) {
    // Runs beyond the first few are only counted, in the path that made them.
    Tally& runs = m_Frames.back().m_PredicateRuns[frame.m_Condition];
    frame.m_Quiet = runs.m_Told == TOLD_PREDICATE_RUNS;
    ++(frame.m_Quiet ? runs.m_Runs : runs.m_Told);
    frame.m_Brief = runs.m_Told > 1;
  }
  if (!frame.m_Quiet) {
    writeLine("predicate [" + frame.m_Condition + "] on " +
              counted(i_Candidates, "candidate", "candidates"));
  }
  m_Frames.push_back(frame);
}

void XPathExplainer::candidateJudged(const Node& i_Candidate, long i_Position,
                                     const XPathExpressionsParser& i_Parser, TErrorCode i_Result,
                                     bool i_Keep) {
  Frame& run = m_Frames.back();
  if (!run.m_Quiet && run.m_Judged < TOLD_VERDICTS) {
    writeLine("candidate " + std::to_string(i_Position) + " " + label(i_Candidate) + ": " +
              verdict(i_Parser, i_Position, i_Result, i_Keep) + (i_Keep ? ": kept" : ": dropped"));
  }
  if (run.m_Judged >= TOLD_VERDICTS && i_Keep) {
    ++run.m_LaterKept;
  }
  ++run.m_Judged;
}

void XPathExplainer::predicateFinished(size_t i_Kept, TErrorCode i_Result) {
  const Frame run = m_Frames.back();
  m_Frames.pop_back();
  if (run.m_Quiet) {
    if (!m_Frames.empty()) {
      Tally& runs = m_Frames.back().m_PredicateRuns[run.m_Condition];
      runs.m_Candidates += run.m_Candidates;
      runs.m_Kept += i_Kept;
    }
    return;
  }
  if (run.m_Judged > TOLD_VERDICTS) {
    writeLine("  ... " +
              counted(run.m_Judged - TOLD_VERDICTS, "more candidate", "more candidates") + ", " +
              std::to_string(run.m_LaterKept) + " kept");
  }
  writeLine("  kept " + std::to_string(i_Kept) + " of " + std::to_string(run.m_Candidates) +
            (i_Result != 0 ? ", " + codeText(i_Result) : ""));
}

void XPathExplainer::valueShaped(XPathDataType i_Type, const XPathOutputElements& i_Values) {
  if (i_Type != NodeSetType) {
    const std::string value = i_Values.empty() ? "" : narrow(i_Values.front()->hostValue());
    writeLine(std::string("value: ") + typeName(i_Type) + " " +
              (i_Type == StringType ? "\"" + value + "\"" : value));
    return;
  }
  writeLine("value: node set of " + counted(i_Values.size(), "item", "items"));
  for (size_t index = 0; index < i_Values.size() && index < TOLD_VALUES; ++index) {
    writeLine("  \"" + narrow(i_Values[index]->hostValue()) + "\"");
  }
  if (i_Values.size() > TOLD_VALUES) {
    writeLine("  ... " + std::to_string(i_Values.size() - TOLD_VALUES) + " more");
  }
}

}  // namespace XmlPlugin
