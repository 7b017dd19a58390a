#include <cctype>
#include <cstring>

#include "engine/console/ast.h"
#include "runtime/values/number_text.h"

namespace arena::console {
namespace {

using Type = Node::Type;

constexpr int kDeepest = 200;        // nested expressions
constexpr int kLongestChain = 1000;  // operators, members, elements and calls in a row

struct Token {
  enum class Type { kEnd, kNumber, kText, kName, kSymbol } type = Type::kEnd;
  std::string text;
  double number = 0;
  std::size_t at = 0;
};

bool starts_name(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_'; }
bool is_digit(char c) { return c >= '0' && c <= '9'; }

class Lexer {
 public:
  explicit Lexer(const std::string& source) : source_(source) {}

  Token next() {
    while (at_ < source_.size() && std::strchr(" \t\r\n", source_[at_]) != nullptr && source_[at_] != 0) ++at_;
    Token token;
    token.at = at_;
    if (at_ >= source_.size()) return token;
    const char c = source_[at_];
    if (is_digit(c) || (c == '.' && at_ + 1 < source_.size() && is_digit(source_[at_ + 1]))) return number(token);
    if (c == '"') return text(token);
    if (starts_name(c)) {
      token.type = Token::Type::kName;
      while (at_ < source_.size() && (starts_name(source_[at_]) || is_digit(source_[at_]))) token.text += source_[at_++];
      return token;
    }
    return symbol(token);
  }

 private:
  Token number(Token token) {
    token.type = Token::Type::kNumber;
    const std::size_t from = at_;
    const bool hexadecimal = source_.compare(at_, 2, "0x") == 0 || source_.compare(at_, 2, "0X") == 0;
    if (hexadecimal) at_ += 2;
    while (at_ < source_.size() &&
           (is_digit(source_[at_]) || source_[at_] == '.' || (hexadecimal && std::isxdigit(static_cast<unsigned char>(source_[at_]))) ||
            (!hexadecimal && (source_[at_] == 'e' || source_[at_] == 'E')) ||
            (!hexadecimal && (source_[at_] == '-' || source_[at_] == '+') && (source_[at_ - 1] == 'e' || source_[at_ - 1] == 'E')))) {
      ++at_;
    }
    const auto parsed = parse_real(source_.substr(from, at_ - from));
    if (!parsed) throw ParseError{"'" + source_.substr(from, at_ - from) + "' is no number"};
    token.number = *parsed;
    return token;
  }

  Token text(Token token) {
    token.type = Token::Type::kText;
    for (++at_; at_ < source_.size() && source_[at_] != '"'; ++at_) {
      if (source_[at_] != '\\') {
        token.text += source_[at_];
        continue;
      }
      if (++at_ >= source_.size()) break;
      const char escaped = source_[at_];
      token.text += escaped == 'n' ? '\n' : escaped == 't' ? '\t' : escaped == 'r' ? '\r' : escaped;
    }
    if (at_ >= source_.size()) throw ParseError{"a text is not closed"};
    ++at_;
    return token;
  }

  Token symbol(Token token) {
    token.type = Token::Type::kSymbol;
    for (const char* two : {"==", "!=", "<=", ">=", "&&", "||", "+=", "-=", "*=", "/=", "%="}) {
      if (source_.compare(at_, 2, two) != 0) continue;
      token.text = two;
      at_ += 2;
      return token;
    }
    if (std::strchr("+-*/%<>=!()[]{}.,;:", source_[at_]) == nullptr)
      throw ParseError{std::string("'") + source_[at_] + "' means nothing here"};
    token.text = source_[at_++];
    return token;
  }

  const std::string& source_;
  std::size_t at_ = 0;
};

NodePtr make(Type type, std::string text = {}) {
  auto node = std::make_unique<Node>();
  node->type = type;
  node->text = std::move(text);
  return node;
}
template <class... Children>
NodePtr make_with(Type type, std::string text, Children... children) {
  NodePtr node = make(type, std::move(text));
  (node->children.push_back(std::move(children)), ...);
  return node;
}

class Parser {
 public:
  explicit Parser(const std::string& source) : lexer_(source) { advance(); }

  NodePtr block(const char* end) {
    NodePtr statements = make(Type::kBlock);
    while (true) {
      while (is(";")) advance();
      if (end == nullptr ? token_.type == Token::Type::kEnd : is(end)) break;
      statements->children.push_back(statement());
      const bool closed = statements->children.back()->type == Type::kWith;
      const bool at_end = end == nullptr ? token_.type == Token::Type::kEnd : is(end);
      if (!closed && !at_end && !is(";")) fail("';' was expected");
    }
    return statements;
  }

 private:
  // Guards the native stack against endless nesting.
  class Depth {
   public:
    explicit Depth(Parser& parser) : parser_(parser) {
      if (++parser_.depth_ > kDeepest) throw ParseError{"the expression is nested too deeply"};
    }
    ~Depth() { --parser_.depth_; }

   private:
    Parser& parser_;
  };

  [[noreturn]] void fail(const std::string& what) const {
    const std::string found = token_.type == Token::Type::kEnd ? "the end" : "'" + token_.text + "'";
    throw ParseError{what + " at column " + std::to_string(token_.at + 1) + ", not " + found};
  }
  void advance() { token_ = lexer_.next(); }
  bool is(const char* symbol) const { return token_.type == Token::Type::kSymbol && token_.text == symbol; }
  bool take(const char* symbol) {
    if (!is(symbol)) return false;
    advance();
    return true;
  }
  // Each link of a chain stands below the next one in the tree.
  static void check_chain(int links) {
    if (links > kLongestChain) throw ParseError{"the expression is too long"};
  }
  void expect(const char* symbol) {
    if (!take(symbol)) fail(std::string("'") + symbol + "' was expected");
  }
  std::string expect_name() {
    if (token_.type != Token::Type::kName) fail("a name was expected");
    std::string name = token_.text;
    advance();
    return name;
  }

  NodePtr statement() {
    const Depth depth(*this);
    if (token_.type == Token::Type::kName && token_.text == "with") {
      advance();
      expect("(");
      NodePtr target = expression();
      expect(")");
      expect("{");
      NodePtr body = block("}");
      expect("}");
      return make_with(Type::kWith, {}, std::move(target), std::move(body));
    }
    NodePtr left = expression();
    for (const char* assignment : {"=", "+=", "-=", "*=", "/=", "%="}) {
      if (!is(assignment)) continue;
      if (left->type != Type::kName && left->type != Type::kMember && left->type != Type::kElement) fail("this cannot be assigned to");
      advance();
      return make_with(Type::kAssign, assignment, std::move(left), expression());
    }
    return left;
  }

  NodePtr expression() { return binary(0); }

  NodePtr binary(std::size_t level) {
    static const std::vector<std::vector<std::string>> kLevels = {{"||"},     {"&&"},         {"==", "!="}, {"<", "<=", ">", ">="},
                                                                  {"+", "-"}, {"*", "/", "%"}};
    const Depth depth(*this);
    if (level == kLevels.size()) return unary();
    NodePtr left = binary(level + 1);
    for (int links = 0;; check_chain(++links)) {
      const std::string* found = nullptr;
      for (const std::string& symbol : kLevels[level]) {
        if (is(symbol.c_str())) found = &symbol;
      }
      if (found == nullptr) return left;
      advance();
      left = make_with(Type::kBinary, *found, std::move(left), binary(level + 1));
    }
  }

  NodePtr unary() {
    const Depth depth(*this);
    for (const char* symbol : {"-", "!", "+"}) {
      if (take(symbol)) return make_with(Type::kUnary, symbol, unary());
    }
    return postfix();
  }

  NodePtr postfix() {
    NodePtr node = primary();
    for (int links = 0;; check_chain(++links)) {
      if (take(".")) {
        node = make_with(Type::kMember, expect_name(), std::move(node));
      } else if (take("[")) {
        NodePtr index = expression();
        expect("]");
        node = make_with(Type::kElement, {}, std::move(node), std::move(index));
      } else if (take("(")) {
        node = make_with(Type::kCall, {}, std::move(node));
        list(")", node->children);
      } else {
        return node;
      }
    }
  }

  void list(const char* end, std::vector<NodePtr>& into) {
    while (!take(end)) {
      into.push_back(expression());
      if (!is(end)) expect(",");
    }
  }

  NodePtr primary() {
    if (token_.type == Token::Type::kNumber) {
      NodePtr node = make(Type::kNumber);
      node->number = token_.number;
      advance();
      return node;
    }
    if (token_.type == Token::Type::kText) {
      NodePtr node = make(Type::kText, token_.text);
      advance();
      return node;
    }
    if (token_.type == Token::Type::kName) return named();
    if (take("(")) {
      NodePtr inner = expression();
      expect(")");
      return inner;
    }
    if (take("[")) {
      NodePtr array = make(Type::kArray);
      list("]", array->children);
      return array;
    }
    if (take("{")) return struct_literal();
    fail("an expression was expected");
  }

  NodePtr named() {
    std::string name = expect_name();
    if (name != "new") return make(Type::kName, std::move(name));
    NodePtr made = make(Type::kNew, expect_name());
    expect("(");
    list(")", made->children);
    return made;
  }

  NodePtr struct_literal() {
    NodePtr made = make(Type::kStruct);
    while (!take("}")) {
      if (token_.type == Token::Type::kText) {
        made->names.push_back(token_.text);
        advance();
      } else {
        made->names.push_back(expect_name());
      }
      expect(":");
      made->children.push_back(expression());
      if (!is("}")) expect(",");
    }
    return made;
  }

  Lexer lexer_;
  Token token_;
  int depth_ = 0;
};

}  // namespace

NodePtr parse(const std::string& source) { return Parser(source).block(nullptr); }

}  // namespace arena::console
