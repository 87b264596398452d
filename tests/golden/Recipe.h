#pragma once

#include <string>
#include <vector>

#include "tests/golden/SchemaClass.h"
#include "tests/support/Bytes.h"

namespace trelvo::test {

/// The objects of a recipe that was carried out, or how far it came.
struct Built {
  Variables variables;
  std::size_t step = 0;      ///< How many steps were carried out.
  Status status = StatusOk;  ///< What the step said that failed; a factory that gave nothing says
                             ///< StatusOutOfMemory.
};

/// How an object is built, step by step, in the language that vectors/README.txt tells.
class Recipe {
 public:
  /// Throws std::runtime_error for a line, a class or a field that it does not know.
  explicit Recipe(const std::string& text);

  /// Somewhere to build: room for all objects, so that building itself allocates nothing more than
  /// the library does.
  Built start() const;

  /// Carries all steps out, from where `built` stands. @return false when one failed; `built` then
  /// stands there, and building can go on by trying it again.
  bool build(Built& built) const;

  /// The object that is written.
  const Made& result(const Built& built) const { return built.variables.at(m_result); }
  const SchemaClass& resultClass() const { return *m_resultClass; }

  /// Whether the object read back equals the one written.
  bool equalAfterReading() const { return m_equal; }

  /// The line of a step, for messages.
  const std::string& line(std::size_t step) const { return m_steps.at(step).line; }

 private:
  struct Step {
    std::string line;
    std::size_t variable = 0;
    std::function<Status(Made&, const Variables&)> run;
  };

  struct Parser;

  std::vector<Step> m_steps;
  std::size_t m_variables = 0;
  std::size_t m_result = 0;
  const SchemaClass* m_resultClass = nullptr;
  bool m_equal = true;
};

/// A golden vector.
struct Vector {
  std::string name;
  Recipe recipe;
  Bytes content;
};

/// The names of all vectors, in order.
const std::vector<std::string>& vectorNames();
Vector loadVector(const std::string& name);

}  // namespace trelvo::test
