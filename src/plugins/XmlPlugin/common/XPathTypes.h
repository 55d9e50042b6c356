// Value types shared by the whole XPath engine.
#pragma once

namespace XmlPlugin {

// The XPath type of a value.
enum XPathDataType {
  BooleanType = 0,
  StringType = 1,
  NumberType = 2,
  NodeSetType = 3,
};

// The kind of a number. A special kind always carries the number 0.0; negative zero is
// a flag of its own on the value.
enum LimitType {
  NumbType = 0,
  NaN = 1,
  Infinity = 2,
  NInfinity = 3,
  ZeroByInfinity = 4,  // an ordinary number divided by an infinity
};

}  // namespace XmlPlugin
