// An account of one evaluation, for the people who write the rules (xmlquery --explain).
//
// xmlPluginExplain evaluates an XPath text over a file as an XmlValues request does and tells,
// one line at a time, what the engine made of it: the items the text was cut into and their
// postfix order, each location path as anchored and prepared, how many nodes each step kept,
// each predicate's verdicts and the value. The lines come from hooks in the evaluation itself.
// Requests of the host are not affected: they never carry these hooks.
#pragma once

#include "host/Types.h"

extern "C" {

// Receives one line (UTF-8, without its newline) and the pointer given to xmlPluginExplain.
typedef void (*XmlPluginExplainLine)(void* io_pUser, const char* i_Line);

// Returns the request's code (0, or the XML_PLUGIN_ERROR_* an XmlValues request would give;
// HOST_ERROR_BAD_ARGUMENT for a null argument). Call it between the plug-in's
// initializePlugin and cleanupPlugin: it shares the plug-in's document cache.
__attribute__((visibility("default"))) TErrorCode xmlPluginExplain(const wchar_t* i_FileName,
                                                                   const wchar_t* i_XPath,
                                                                   XmlPluginExplainLine i_WriteLine,
                                                                   void* io_pUser);

typedef TErrorCode (*XmlPluginExplainFunction)(const wchar_t*, const wchar_t*, XmlPluginExplainLine,
                                               void*);
}
