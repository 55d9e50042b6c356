#include "XmlPlugin/XmlPluginExplain.h"

#include "HostBoundary.h"
#include "XPathEngine.h"
#include "XPathExplainer.h"

TErrorCode xmlPluginExplain(const wchar_t* i_FileName, const wchar_t* i_XPath,
                            XmlPluginExplainLine i_WriteLine, void* io_pUser) {
  if (i_FileName == nullptr || i_XPath == nullptr || i_WriteLine == nullptr) {
    return HOST_ERROR_BAD_ARGUMENT;
  }
  return ::XmlPlugin::guardHostCall([&]() -> TErrorCode {
    ::XmlPlugin::XPathExplainer explainer(
        [&](const std::string& i_Line) { i_WriteLine(io_pUser, i_Line.c_str()); });
    ::XmlPlugin::XPathOutputElements output;
    ::XmlPlugin::OutputElementsGuard guard(output);
    return ::XmlPlugin::XPathEngine().start(String(i_XPath), String(i_FileName), output,
                                            &explainer);
  });
}
