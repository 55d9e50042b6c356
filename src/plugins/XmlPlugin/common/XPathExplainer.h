// An account of one evaluation for the person who wrote the rule: the items and postfix order
// of each expression, each location path as anchored and prepared, how many nodes each step
// kept, each predicate's verdicts and the value. Inside a predicate only its first candidate's
// evaluation is told in full, the first few verdicts are told one by one and the rest counted;
// of the runs of one predicate in one path the first is told in full, the next few by their
// verdicts, and the rest counted.
#pragma once

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "XPathEvaluationObserver.h"

namespace XmlPlugin {

class XPathExplainer : public XPathEvaluationObserver {
 public:
  // Every line (UTF-8, indented, without its newline) goes to i_WriteLine.
  explicit XPathExplainer(std::function<void(const std::string&)> i_WriteLine);

  void expressionStarted(const XPathExpressionsParser& i_Parser) override;
  void pathsPrepared(const String& i_Anchored, const std::vector<String>& i_Paths,
                     const Node* i_pRoot) override;
  void pathStarted(const std::vector<String>& i_Steps) override;
  void stepMatched(unsigned int i_Index, const Node* i_pNode, bool i_Marked) override;
  void itemsMade(size_t i_Items) override;
  void pathsEvaluated(const XPathOutputElements& i_Items, TErrorCode i_Result) override;
  void predicateStarted(const String& i_Condition, size_t i_Candidates) override;
  void candidateJudged(const Node& i_Candidate, long i_Position,
                       const XPathExpressionsParser& i_Parser, TErrorCode i_Result,
                       bool i_Keep) override;
  void predicateFinished(size_t i_Kept, TErrorCode i_Result) override;
  void valueShaped(XPathDataType i_Type, const XPathOutputElements& i_Values) override;

 private:
  // The runs of one predicate in one path: how many were told, and what the others added up to.
  struct Tally {
    size_t m_Told = 0;
    size_t m_Runs = 0;
    size_t m_Candidates = 0;
    size_t m_Kept = 0;
  };
  // A location-path operand or a predicate run under way, innermost last.
  struct Frame {
    bool m_Predicate = false;
    bool m_Quiet = false;  // nothing inside is told
    // A location-path operand: its prepared paths, how many of them started, and the steps of
    // the one under way with the nodes each kept.
    std::vector<std::string> m_Paths;
    size_t m_Started = 0;
    std::vector<std::string> m_Steps;
    std::vector<std::set<const Node*>> m_Kept;
    size_t m_Items = 0;                            // that the leaf made
    std::map<std::string, Tally> m_PredicateRuns;  // by text: every run, told or not
    // A predicate run; a brief one (a later run of a predicate already told in the path)
    // tells only its verdicts.
    bool m_Brief = false;
    std::string m_Condition;
    size_t m_Candidates = 0;
    size_t m_Judged = 0;
    size_t m_LaterKept = 0;  // of the candidates after the verdicts told
  };

  bool isQuiet() const;
  // Writes a line indented by the frames under way, less i_Outdent levels.
  void writeLine(const std::string& i_Text, size_t i_Outdent = 0) const;
  // Tells the steps of the path under way and how many nodes each kept.
  void tellSteps(const Frame& i_Path) const;

  std::function<void(const std::string&)> m_WriteLine;
  std::vector<Frame> m_Frames;
};

}  // namespace XmlPlugin
