#pragma once
// Statements of the console as a tree.
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace arena::console {

struct Node;
using NodePtr = std::unique_ptr<Node>;

struct Node {
  enum class Type { kNumber, kText, kName, kMember, kElement, kCall, kNew, kArray, kStruct, kUnary, kBinary, kAssign, kWith, kBlock } type;
  double number = 0;
  std::string text;                // name, member, operator, text
  std::vector<NodePtr> children;   // operands, arguments after the callee, elements, statements
  std::vector<std::string> names;  // of a struct literal's fields
};

// The statements of a line, as one block. Throws ParseError with a sentence that names the place.
struct ParseError {
  std::string message;
};
NodePtr parse(const std::string& source);

}  // namespace arena::console
