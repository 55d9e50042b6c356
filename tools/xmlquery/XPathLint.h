// Warnings about XPath texts that this engine accepts but reads otherwise than XPath 1.0: each
// names the construct, says what the engine makes of it and gives a form that works. The
// engine's results are left as they are; this only reads the text.
#pragma once

#include <string>
#include <vector>

namespace XmlQuery {

struct LintWarning {
  int m_Column;           // 1-based, in characters
  std::string m_Rule;     // a short name, e.g. "blank-before-path"
  std::string m_Message;  // what the engine does with it
  std::string m_Instead;  // the form that works
};

// The warnings for an XPath text (UTF-8), in text order; empty when none applies. A text the
// grammar rejects may still get warnings.
std::vector<LintWarning> lintXPath(const std::string& i_XPath);

}  // namespace XmlQuery
