// Failing allocations, memory per cell, and time that does not grow with the number of siblings.
#include <cstdlib>
#include <functional>
#include <new>

#include "host/messages.h"
#include "output_fixture.h"

namespace {

size_t allocationsUntilFailure = SIZE_MAX;  // SIZE_MAX: none fails
size_t bytesInUse = 0;

struct Header {
  alignas(std::max_align_t) size_t size;
};

}  // namespace

void* operator new(size_t size) {
  if (allocationsUntilFailure != SIZE_MAX && allocationsUntilFailure-- == 0) {
    allocationsUntilFailure = SIZE_MAX;
    throw std::bad_alloc();
  }
  auto* header = static_cast<Header*>(std::malloc(sizeof(Header) + size));
  if (header == nullptr) throw std::bad_alloc();
  header->size = size;
  bytesInUse += size;
  return header + 1;
}

void* operator new(size_t size, const std::nothrow_t&) noexcept {
  try {
    return operator new(size);
  } catch (const std::bad_alloc&) {
    return nullptr;
  }
}

void operator delete(void* memory) noexcept {
  if (memory == nullptr) return;
  Header* header = static_cast<Header*>(memory) - 1;
  bytesInUse -= header->size;
  std::free(header);
}

void operator delete(void* memory, size_t) noexcept { operator delete(memory); }

namespace workbench {
namespace {

class Ownership : public OutputTest {
 protected:
  Ownership() {
    x_ = data.addNumber("variable with a long name", "A label that no short string can hold");
    region_ = data.addString("region of the country", "Region of the country");
    data.splitVariablesNow = {region_};
  }

  /// The calls of a small run. Each can be repeated after it failed.
  std::vector<std::function<void()>> calls() {
    const auto table = [this]() -> BpPivotTable& {
      return pivot(*procedure_, "A table with a title that takes memory");
    };
    return {
        [this] { begin("PROPORTIONS /ONESAMPLE variables that take some memory."); },
        [this] { procedure_ = std::make_unique<BpProcedure>("Proportions", 10); },
        [] { AddNotes(4, text("A label of a note, long"), text("A value of a note, long")); },
        [this] {
          data.splitNow.clear();
          data.splitNow.emplace_back(std::string("north of the river"));
          procedure_->SplitChange();
        },
        [=] { dimensionAt(table(), text("Interval types and others"), 0, 1); },
        [=] { dimensionAt(table(), text("Variables and pairs of them"), 0, 2); },
        [=] { dimensionAt(table(), text("Statistics of all kinds here"), 1); },
        [=, this] {
          table()
              .Dimension(text("Variables and pairs of them"), 2)
              .Category(composite("^1 = ^2", BpVariable(x_, 2), BpDataValue(x_, 1.0, 2)));
        },
        [=] {
          table()
              .Dimension(text("Interval types and others"), 2)
              .Category(text("Wald (Continuity Corrected)"));
        },
        [=] {
          BpGroup& group = table()
                               .Dimension(text("Statistics of all kinds here"), 2)
                               .Group(text("A group that takes memory"), 1, 2);
          BpCategory& leaf = group.Category(text("A category that takes memory"));
          leaf.Cell(statistic(0.5));
          leaf.Note(composite("Test Value = ^1, and it is long", labelNumber(0.2)));
          BpCellNote note;
          note.text = BpCellText::Replicate(text("A note that takes some memory"));
          leaf.CellNote(note);
        },
    };
  }

  /// What must be there in the end, once.
  void expectWhole(const DocumentProcedure& done) {
    ASSERT_EQ(done.tables.size(), 1u);
    EXPECT_EQ(done.notes.size(), 1u);
    EXPECT_EQ(cellsText(*done.tables[0]),
              "north of the river/ A label that no short string can hold = 1/ "
              "Wald (Continuity Corrected)/ A group that takes memory/A category that takes "
              "memory/ 0.500 A note that takes some memory\n");
    EXPECT_EQ(done.tables[0]->dimensions().size(), 4u);
    EXPECT_EQ(done.tables[0]->dimensions()[3].footnotes(2).size(), 1u);
    for (const Dimension& dimension : done.tables[0]->dimensions()) {
      EXPECT_EQ(dimension.leafCount(), 1);
    }
  }

  VarIndex x_, region_;
  std::unique_ptr<BpProcedure> procedure_;
};

TEST_F(Ownership, EveryAllocationMayFail) {
  size_t failures = 0;
  for (const auto& call : calls()) {
    for (size_t k = 0;; ++k) {
      allocationsUntilFailure = k;
      try {
        call();
        allocationsUntilFailure = SIZE_MAX;
        break;
      } catch (const std::bad_alloc&) {
        ++failures;
      }
    }
  }
  EXPECT_GT(failures, 100u);
  expectWhole(finish());
}

TEST_F(Ownership, AReportThatFailsLeavesNoHalfMessage) {
  begin();
  size_t failures = 0;
  for (size_t k = 0;; ++k) {
    allocationsUntilFailure = k;
    try {
      report(Severity::kError, "A key that takes some memory ^1 ...", {"and an argument as well"});
      allocationsUntilFailure = SIZE_MAX;
      break;
    } catch (const std::bad_alloc&) {
      ++failures;
      ASSERT_TRUE(document.current().messages.empty());
    }
  }
  EXPECT_GT(failures, 3u);
  BEPesRepos::BEPesClear();
  const DocumentProcedure& done = finish();
  EXPECT_EQ(done.messages.size(), 1u);
  EXPECT_FALSE(done.failed);
}

TEST_F(Ownership, FinishingMayFailAndBeRepeated) {
  for (const auto& call : calls()) call();
  data.failureNow = "the disk was taken away in the middle of the run";
  size_t failures = 0;
  for (size_t k = 0;; ++k) {
    allocationsUntilFailure = k;
    try {
      document.finishProcedure(&data);
      allocationsUntilFailure = SIZE_MAX;
      break;
    } catch (const std::bad_alloc&) {
      ++failures;
    }
  }
  EXPECT_GT(failures, 0u);
  EXPECT_TRUE(document.procedures().back()->failed);
  EXPECT_EQ(document.procedures().back()->messages.size(), 1u);
}

TEST_F(Ownership, NothingIsLeftOfADocument) {
  const size_t before = bytesInUse;
  {
    OutputDocument other;
    other.beginProcedure("A title that takes some memory", "A command that takes some memory");
    other.finishProcedure(nullptr);
    other.beginProcedure("A title that takes some memory", "A command that takes some memory");
  }
  EXPECT_EQ(bytesInUse, before);
}

TEST_F(Ownership, HalfAMillionCellsAreSmallAndQuick) {
  constexpr int kPairs = 19900;
  constexpr int kMethods = 8;
  begin();
  BpProcedure procedure("Proportions", 10);
  const size_t before = bytesInUse;
  size_t cells = 0;
  for (int pair = 0; pair < kPairs; ++pair) {
    BpPivotTable& table = pivot(procedure, "T");
    BpDimension& methods = dimensionAt(table, text("Interval Type"), 0, 1);
    BpDimension& pairs = dimensionAt(table, text("Variables"), 0, 2);
    BpDimension& columns = dimensionAt(table, text("Statistics"), 1);
    pairs.Category(composite("Pair ^1 vars ^2 ^3 ...", count(pair), BpVariable(x_, 2),
                             BpVariable(region_, 2)));
    for (int method = 0; method < kMethods; ++method) {
      methods.Category(composite("Method ^1", count(method)));
      BpGroup& group = columns.Group(composite("^1% Interval", labelNumber(95)), 1, 2);
      columns.Category(text("Difference")).Cell(statistic(pair));
      group.Category(text("Lower")).Cell(statistic(method));
      group.Category(text("Upper")).Cell(statistic(kSystemMissing));
      cells += 3;
    }
  }
  // A search among siblings would take minutes here and run into the test's time limit.
  const Table& table = *document.current().tables[0];
  EXPECT_EQ(table.cellCount(), cells);
  EXPECT_LT(static_cast<double>(bytesInUse - before) / static_cast<double>(cells), 150.0);
  EXPECT_EQ(table.dimensions()[1].leafCount(), kPairs);
}

}  // namespace
}  // namespace workbench
