#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <vector>

#include "tools/trelvo/ContainerFields.h"
#include "tools/trelvo/RawContainers.h"

namespace trelvo::tool {

/// What a comparison of two files found.
struct DiffCounts {
  std::uint64_t equal = 0;
  std::uint64_t different = 0;
  std::uint64_t onlyLeft = 0;
  std::uint64_t onlyRight = 0;

  bool isEqual() const { return different + onlyLeft + onlyRight == 0; }
};

/// Gets what a comparison finds, in the order of the files.
class DiffListener {
 public:
  virtual ~DiffListener() = default;

  virtual void different(const RawContainer& left, const RawContainer& right,
                         const std::vector<FieldDifference>& fields) = 0;
  virtual void onlyLeft(const RawContainer& container) = 0;
  virtual void onlyRight(const RawContainer& container) = 0;
};

/// Compares two files container by container.
///
/// Where two differ it looks up to kWindow containers ahead in both files for the next two that are
/// the same but for their measurement ids. What lies ahead of those is paired by time stamp and
/// order; what is left over is only in one file.
///
/// Memory: a window of each file. Threads: one at a time.
class DiffWalk {
 public:
  static constexpr std::size_t kWindow = 32;

  /// Readers and listener must outlive this object.
  DiffWalk(RawContainers& left, RawContainers& right, const FieldComparison& comparison,
           DiffListener& listener)
      : m_left(left), m_right(right), m_comparison(comparison), m_listener(listener) {}

  /// Walks to the end of both. Throws Failure where one is damaged.
  DiffCounts run();

 private:
  struct Entry {
    RawContainer raw;
    std::optional<ContainerFields> fields;  // decoded when they are wanted
  };

  /// One file with what has been read ahead of it.
  class Side {
   public:
    explicit Side(RawContainers& input) : m_input(input) {}
    /// Reads ahead until `count` containers are there or the file ends.
    void fill(std::size_t count);
    bool isEmpty() const { return m_ahead.empty(); }
    std::size_t size() const { return m_ahead.size(); }
    Entry& operator[](std::size_t index) { return m_ahead[index]; }
    void pop() { m_ahead.pop_front(); }

   private:
    RawContainers& m_input;
    std::deque<Entry> m_ahead;
    bool m_isEnded = false;
  };

  /// How many containers lie ahead of the next two that are the same.
  struct Gap {
    std::size_t left = 1;
    std::size_t right = 1;
  };

  static const ContainerFields& fields(Entry& entry);
  bool isSame(Entry& left, Entry& right);
  void step();
  Gap nextGap();
  void closeGap(Gap gap);
  void takePair();
  void takeLeft();
  void takeRight();

  Side m_left;
  Side m_right;
  const FieldComparison& m_comparison;
  DiffListener& m_listener;
  DiffCounts m_counts;
};

}  // namespace trelvo::tool
