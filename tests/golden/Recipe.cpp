#include "tests/golden/Recipe.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace trelvo::test {

namespace {

template <class Map, class Key>
const auto& known(const Map& map, const Key& key, const std::string& line) {
  const auto found = map.find(key);
  if (found == map.end()) {
    throw std::runtime_error("not known: " + line);
  }
  return found->second;
}

std::filesystem::path vectorPath(const std::string& name, const char* extension) {
  return std::filesystem::path(TRELVO_TEST_DATA "/golden/vectors") / (name + extension);
}

std::string contentOfFile(const std::filesystem::path& path) {
  std::ifstream file(path);
  if (!file) {
    throw std::runtime_error("cannot be read: " + path.string());
  }
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::vector<std::string> findVectors() {
  std::vector<std::string> names;
  for (const auto& file : std::filesystem::directory_iterator(vectorPath("", ""))) {
    if (file.path().extension() == ".hex") {
      names.push_back(file.path().stem().string());
    }
  }
  std::sort(names.begin(), names.end());
  return names;
}

}  // namespace

const std::map<std::string, SchemaClass>& schemaClasses() {
  static const auto* const kClasses = [] {
    auto* const classes = new std::map<std::string, SchemaClass>;
    for (const auto& table : {recordClasses(), measurementClasses(), injectionClasses()}) {
      for (const SchemaClass& each : table) {
        classes->emplace(each.name, each);
      }
    }
    return classes;
  }();
  return *kClasses;
}

/// Reads a recipe line by line into steps.
struct Recipe::Parser {
  Recipe& recipe;
  std::map<std::string, std::pair<std::size_t, const SchemaClass*>> variables = {};
  std::string line = {};
  std::vector<std::string> words = {};

  void read(const std::string& text) {
    std::istringstream lines(text);
    while (std::getline(lines, line)) {
      std::istringstream row(line);
      words.assign(std::istream_iterator<std::string>(row), {});
      if (!words.empty() && words.front() != "#") {
        readWords();
      }
    }
    if (recipe.m_resultClass == nullptr) {
      throw std::runtime_error("a recipe that writes nothing");
    }
  }

  void readWords() {
    const std::size_t count = words.size();
    if (words[0] == "new" && count >= 3) {
      readNew();
    } else if ((words[0] == "set" || words[0] == "add") && count == 4) {
      readSet(words[0] == "set");
    } else if (words[0] == "unset" && count == 3) {
      readUnset();
    } else if (words[0] == "write" && count == 2) {
      std::tie(recipe.m_result, recipe.m_resultClass) = known(variables, words[1], line);
    } else if (line == "equal no") {
      recipe.m_equal = false;
    } else {
      throw std::runtime_error("not known: " + line);
    }
  }

  Argument argument(const std::string& word) const {
    const auto variable = variables.find(word);
    return {word, variable == variables.end() ? std::nullopt
                                              : std::optional<std::size_t>(variable->second.first)};
  }

  void addStep(std::size_t variable, std::function<Status(Made&, const Variables&)> run) {
    recipe.m_steps.push_back({line, variable, std::move(run)});
  }

  void readNew() {
    const SchemaClass& type = known(schemaClasses(), words[2], line);
    const SchemaClass::Maker& make = known(type.makers, words.size() - 3, line);
    Arguments arguments;
    for (std::size_t i = 3; i < words.size(); ++i) {
      arguments.push_back(argument(words[i]));
    }
    const std::size_t variable = recipe.m_variables++;
    variables[words[1]] = {variable, &type};
    addStep(variable, [&type, &make, arguments](Made& made, const Variables& all) {
      made.type = &type;
      return make(made, arguments, all) ? StatusOk : StatusOutOfMemory;
    });
  }

  void readSet(bool set) {
    const auto& [variable, type] = known(variables, words[1], line);
    const SchemaClass::Setter& setter = known(set ? type->setters : type->adders, words[2], line);
    addStep(variable, [&setter, value = argument(words[3])](Made& made, const Variables& all) {
      return setter(made, value, all);
    });
  }

  void readUnset() {
    const auto& [variable, type] = known(variables, words[1], line);
    const auto mask = static_cast<unsigned int>(std::stoul(words[2], nullptr, 0));
    addStep(variable, [type = type, mask](Made& made, const Variables& /*all*/) {
      type->unset(made, mask);
      return StatusOk;
    });
  }
};

Recipe::Recipe(const std::string& text) { Parser{*this}.read(text); }

Built Recipe::start() const {
  Built built;
  built.variables.resize(m_variables);
  return built;
}

bool Recipe::build(Built& built) const {
  for (; built.step < m_steps.size(); ++built.step) {
    const Step& step = m_steps[built.step];
    built.status = step.run(built.variables[step.variable], built.variables);
    if (built.status != StatusOk) {
      return false;
    }
  }
  return true;
}

const std::vector<std::string>& vectorNames() {
  static const auto* const kNames = new std::vector<std::string>(findVectors());
  return *kNames;
}

Vector loadVector(const std::string& name) {
  return {name, Recipe(contentOfFile(vectorPath(name, ".txt"))),
          bytes(contentOfFile(vectorPath(name, ".hex")))};
}

}  // namespace trelvo::test
