#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <variant>

namespace orchidlamp {

enum class MessageIcon { None, Information, Exclamation, Critical };

// A message box's content. The core returns these; only front ends show them.
struct Message {
  std::string text;
  std::string title;
  MessageIcon icon = MessageIcon::None;
  // What lies behind the text (the system's reason for a failed write, the
  // desktop-backup reason behind a loader message): the window's detailed text,
  // the command line's second line.
  std::string detail{};

  bool operator==(const Message&) const = default;
};

// A command that stopped. The text is what the user is told.
struct Failure {
  Message message;
};

inline Failure Fail(std::string text, MessageIcon icon = MessageIcon::Critical, std::string title = {}) {
  return Failure{Message{std::move(text), std::move(title), icon}};
}

// Raised inside the core where a command meets data it cannot go on with (a
// position outside the loaded bytes, a number field that is no number). Command
// entry points catch it and return it as a Failure; it never reaches a front end.
class CommandError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

template <class T>
class [[nodiscard]] Result {
 public:
  Result(T value) : state_(std::move(value)) {}
  Result(Failure failure) : state_(std::move(failure)) {}

  bool ok() const { return state_.index() == 0; }
  explicit operator bool() const { return ok(); }

  T& value() { return std::get<0>(state_); }
  const T& value() const { return std::get<0>(state_); }
  T* operator->() { return &value(); }
  const T* operator->() const { return &value(); }
  const Failure& failure() const { return std::get<1>(state_); }

 private:
  std::variant<T, Failure> state_;
};

struct Done {};
using Status = Result<Done>;
inline Status Ok() { return Done{}; }

// Runs a command body, turning a CommandError into the Failure it describes.
template <class F>
auto Guarded(F&& body) -> decltype(body()) {
  try {
    return body();
  } catch (const CommandError& e) {
    return Fail(e.what());
  }
}

}  // namespace orchidlamp
