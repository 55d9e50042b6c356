// Why a request failed, for the people who write the rules.
//
// Next to its error code, the plug-in writes one level-1 trace record of component 5 for each
// failure it can explain (an XPath text the grammar rejects, a file that cannot be read or is
// not well-formed, a function that is not supported), under the function name below, so that a
// host's log says why. A record about an XPath text says "at column N" (1-based).
#pragma once

#define XML_PLUGIN_REASON_FUNCTION "XmlPlugin::reason"
