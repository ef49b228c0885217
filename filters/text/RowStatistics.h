// What a number of rows look like when they are read in one format.
#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "filters/text/DelimitedReader.h"

namespace trovan::filters {

class RowStatistics {
 public:
  // Reads on to the end, or to the `mostRows`-th row. An error of the reader ends the rows, too.
  void Take(DelimitedReader& reader, unsigned long long mostRows);

  unsigned long long Rows() const { return rows_; }
  bool TookAll() const { return tookAll_; }            // there are no rows more
  const std::string& Error() const { return error_; }  // of the reader; empty: none

  // The commonest number of fields, the larger one of equally common ones; 0 without rows.
  std::size_t Columns() const;
  // With a commonest number of at least `fewest`; 0 when no row has so many.
  std::size_t ColumnsFrom(std::size_t fewest) const;
  unsigned long long RowsOf(std::size_t columns) const;
  // The line of the first row with another number.
  std::optional<unsigned long long> FirstLineOtherThan(std::size_t columns) const;

  // The share of numbers, with a decimal point or comma, among the fields in which something
  // stands, 0 to 1. The first row is left out unless it is the only one: it may hold names.
  double NumberShare() const;
  // '.' or ',', whichever more numbers of these rows have; 0: there is no fraction. Where commas
  // set the values apart, "840,997" in quotes is rather a list: commas count as decimals only if at
  // least one number in ten has one.
  char Decimal(bool commasDelimit) const;

  // Quoted fields, and of all faults of quotes: text behind a closing one, one that is not closed.
  unsigned long long QuotedFields() const { return quotedFields_; }
  unsigned long long QuoteFaults() const { return quoteFaults_; }

  // Whether the first row holds names: it has no number, and a later one has, or its fields are all
  // different and not empty.
  bool HasHeader() const;
  const std::vector<std::string>& FirstRow() const { return firstRow_; }

 private:
  // Of the first row, and of all others.
  struct Numbers {
    unsigned long long present = 0;  // fields in which something stands
    unsigned long long numbers = 0;
    unsigned long long points = 0;  // numbers with a fraction
    unsigned long long commas = 0;
  };
  struct Width {
    unsigned long long rows = 0;
    unsigned long long firstLine = 0;
  };

  void TakeRow(const DelimitedReader& reader);
  static void Count(const Field& field, Numbers& numbers);
  const Numbers& Counted() const { return rows_ == 1 ? first_ : others_; }

  unsigned long long rows_ = 0;
  bool tookAll_ = false;
  std::string error_;
  std::map<std::size_t, Width> widths_;  // by the number of fields
  Numbers first_;
  Numbers others_;
  unsigned long long quotedFields_ = 0;
  unsigned long long quoteFaults_ = 0;
  std::vector<std::string> firstRow_;
};

}  // namespace trovan::filters
