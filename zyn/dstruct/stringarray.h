// zyn/dstruct/stringarray.h
//
// TStringArray: a two-dimensional table of short 8-bit texts. A cell costs one
// 32-bit word; the texts lie packed in pools of 32768 bytes, and rows are seen
// through a sort index that can be permuted without moving any text.

#ifndef ZYN_DSTRUCT_STRINGARRAY_H_
#define ZYN_DSTRUCT_STRINGARRAY_H_

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "zyn/base/zynbase.h"
#include "zyn/dstruct/unit.h"
#include "zyn/platform/object.h"
#include "zyn/platform/text.h"
#include "zyn/platform/textfile.h"

namespace Zyn_dstruct {

using zyn::platform::ShortString;

// Bytes in one pool; entries use offsets 1 to 32767 of it.
inline constexpr int kStringPoolSize = 32768;

// One storage block; byte i of the array is offset i + 1.
using TStringPool = std::array<std::uint8_t, kStringPoolSize>;

// Lets a host replace the text a sort compares a cell by: OutString starts as
// InString.
using TBeforeSortExchgEvent = std::function<void(
    zyn::platform::TObject* Sender, const std::u16string& InString, std::u16string& OutString)>;

// Rows count from 1 to NrOfRows(), columns from 0 to NrOfColumns(); column 0
// is an extra text column without attribute. Every operation takes logical
// rows, which the sort index maps to physical ones. Indices out of range are
// never an error: reads give the empty text or 0, writes do nothing.
class TStringArray : public zyn::platform::TComponent {
 public:
  // One row, one data column, AllocRowsBy 10, one pool. Raises
  // EZYNDStructError "Class TStringArray: failed to initialize (out of
  // memory)" if the storage can't be had.
  explicit TStringArray(TComponent* AOwner = nullptr);
  ~TStringArray() override;

  // --- Cells ---------------------------------------------------------------

  // The text of cell (c, r); empty out of range or for a cell never written.
  ShortString GetString(int c, int r) const;
  ShortString Elem(int c, int r) const { return GetString(c, r); }
  // Stores `s` in place if the cell's entry is long enough, else in a new
  // entry, and fires OnChange. Out of range: nothing happens. A new pool
  // beyond the 65535 the cell word can address raises EZYNDStructError.
  void SetString(int c, int r, const ShortString& s);

  // The cell without blanks at its ends and with ',' read as '.', as a
  // number; 0.0 for an empty cell. Raises EZYNDStructError "Class
  // TStringArray: invalid numeric string: [c,r]: text" if it isn't one.
  double GetAsNumber(int c, int r) const;
  double AsNumber(int c, int r) const { return GetAsNumber(c, r); }
  // GetAsNumber rounded half to even and clamped to +-2147483647.
  int GetAsInteger(int c, int r) const;
  int AsInteger(int c, int r) const { return GetAsInteger(c, r); }

  // The attribute byte of logical row r; it travels with its row through a
  // sort. 0 out of range; a write out of range is ignored.
  std::uint8_t GetRowAttrib(int r) const;
  std::uint8_t RowAttrib(int r) const { return GetRowAttrib(r); }
  void SetRowAttrib(int r, std::uint8_t b);
  // The attribute byte of column c, 1 to NrOfColumns().
  std::uint8_t GetColAttrib(int c) const;
  std::uint8_t ColAttrib(int c) const { return GetColAttrib(c); }
  void SetColAttrib(int c, std::uint8_t b);

  // --- Dimensions and storage ----------------------------------------------

  int NrOfColumns() const { return FNCol; }
  void SetNrCols(int Value) { Resize(Value, FNRow); }
  int NrOfRows() const { return FNRow; }
  void SetNrRows(int Value) { Resize(FNCol, Value); }
  // Row allocation step, used at the next reallocation; values below 1 count
  // as 1 there.
  int AllocRowsBy() const { return FAllocRowsBy; }
  void SetAllocRowsBy(int Value) { FAllocRowsBy = Value; }
  // The number of pools.
  int NumBuffers() const { return FNumPoolAddr; }

  // Sets the dimensions and drops any pending sort order. False (nothing
  // fired) for Nc or Nr below 1; True (nothing fired) for the present
  // dimensions. False if the memory can't be had, the table then unchanged;
  // OnChange fires in both other cases.
  bool Resize(int Nc, int Nr);
  // Packs the live entries of each pool to its front, column by column.
  // The only way, besides Clear, to win back the bytes of overwritten texts.
  void GarbageCollection();
  // Empties all cells and attributes, keeps the dimensions, drops all pools
  // but the first. Fires nothing.
  void Clear();
  // Writes `s` to every cell, column 0 included; the empty text clears.
  void Fill(const ShortString& s);

  // Makes this table an exact twin of a TStringArray: cells, pools (dead
  // bytes too), pending sort order, attributes and the three event handlers.
  // Fires nothing. Another class ends in the inherited EConvertError.
  void Assign(const zyn::platform::TPersistent& Source) override;
  // Calls OnChange, if set, with this table as Sender.
  void Changed();

  // --- Sorting -------------------------------------------------------------

  // Comb sort of the row index by column Col, then by ColSec if it is 1 or
  // more, ignoring ASCII case. Moves no text. Without an OnBeforeSortExchange
  // handler it works on a temporary array of 16 bytes a row (in place, more
  // slowly, if that can't be had). Fires OnPercentDone with 0, after each
  // pass and with 100, and OnChange once if the table has 2 rows or more.
  void Sort(int Col, int ColSec, bool Ascending);
  // OutString := InString, then OnBeforeSortExchange may change it.
  void BeforeSortExchange(const std::u16string& InString, std::u16string& OutString);
  // Makes the visible order physical; fires nothing.
  void CommitSorting();
  // Back to physical order; fires OnChange.
  void UnSort();
  // The physical row shown as logical row ix; -1 out of range.
  int GetSortOrder(int ix) const;
  int SortOrder(int ix) const { return GetSortOrder(ix); }
  // Stores `position` for logical row ix if both lie in 1 to NrOfRows();
  // unchecked beyond that, fires nothing.
  void SetSortOrder(int ix, int position);

  // --- Searching -----------------------------------------------------------

  // The first cell, by logical row and then column, within the clamped
  // rectangle that contains FindStr (FindCell) or equals it (FindCellExact).
  // -1 for ColLow or ColHigh means all columns, -1 for both RowLow and
  // RowHigh all rows. On a miss Col and row stay unchanged.
  bool FindCell(std::u16string_view FindStr, bool MatchCase, int ColLow, int ColHigh, int RowLow,
                int RowHigh, int& Col, int& row) const;
  bool FindCellExact(std::u16string_view FindStr, bool MatchCase, int ColLow, int ColHigh,
                     int RowLow, int RowHigh, int& Col, int& row) const;
  // Bisects column ColIx, sorted in the given direction, and gives the first
  // row of the run equal to FindStr. On a miss `row` is the last row compared.
  bool FindCellInSortedColumn(std::u16string_view FindStr, bool MatchCase, int ColIx, int RowLow,
                              int RowHigh, bool ColIsAscending, int& row) const;

  // --- Rows ----------------------------------------------------------------

  // True if columns 1 to NrOfColumns() of the row hold only blanks (' ').
  bool RowEmpty(int ARow) const;
  // True if rows 1 to NrOfRows() of the column hold only blanks.
  bool ColumnEmpty(int ACol) const;
  // Appends an empty row and gives its number.
  int AddRow();
  // An empty row in front of logical row r; the table ends in physical order
  // with the new row at position r.
  void InsertRow(int r);
  // Removes logical row r; the last remaining row is emptied instead.
  void RemoveRow(int r);
  // Copies the texts and the attribute of row Source to row Target.
  void CopyRow(int Source, int Target);

  // --- The XML form (docs/stringarray_xml.md) -------------------------------

  // Writes the table as a block with the identifier DataID, preceded by an
  // XML declaration if CreateHeader is true; the file stays open. Failures of
  // the file raise EInOutError.
  void WriteToOpenXMLFile(zyn::platform::Textfile& f, bool CreateHeader,
                          std::u16string_view DataID) const;
  // Creates (or empties) the file FName and writes the table to it.
  void SaveAsXMLFile(std::u16string_view FName, std::u16string_view DataID) const;
  // Reads on from the file's position to the block with the identifier
  // DataID (without regard to ASCII case; empty takes the next block) and
  // loads it. False if there is none or it is damaged: the table is then
  // unchanged. On success OnChange fires once. EInOutError passes through.
  bool ReadFromOpenXMLFile(zyn::platform::Textfile& f, std::u16string_view DataID);
  // ReadFromOpenXMLFile from the start of the file FName; False also if the
  // file can't be read.
  bool LoadFromXMLFile(std::u16string_view FName, std::u16string_view DataID);

  // --- Events --------------------------------------------------------------

  const zyn::platform::TNotifyEvent& OnChange() const { return FOnChange; }
  void SetOnChange(zyn::platform::TNotifyEvent Value) { FOnChange = std::move(Value); }
  const Zyn_zynbase::TOnPercentDoneEvent& OnPercentDone() const { return FOnPercentDone; }
  void SetOnPercentDone(Zyn_zynbase::TOnPercentDoneEvent Value) {
    FOnPercentDone = std::move(Value);
  }
  const TBeforeSortExchgEvent& OnBeforeSortExchange() const { return FOnBefSortExc; }
  void SetOnBeforeSortExchange(TBeforeSortExchgEvent Value) {
    FOnBefSortExc = std::move(Value);
    ++store_version_;
  }

  // --- Inspection of the storage, for diagnostics and tests -----------------

  // The cell word of (c, logical r): 0, or pool << 16 | offset; 0 out of range.
  std::uint32_t CellWord(int c, int r) const;
  // The first free offset of pool `pool` (1-based); 0 out of range.
  int FirstFree(int pool) const;
  // Rows the arrays have room for.
  int RowsAllocated() const { return FRAllocated; }

 protected:
  void AssignTo(zyn::platform::TPersistent& Dest) const override;

 private:
  using TWords = std::vector<std::uint32_t>;

  bool InRange(int c, int r) const { return c >= 0 && c <= FNCol && r >= 1 && r <= FNRow; }
  // The bytes of a cell's text, read in the pool; empty for word 0.
  std::string_view CellBytes(int c, int r) const;
  std::string_view EntryBytes(std::uint32_t word) const;
  std::uint32_t PlaceEntry(std::string_view text);
  void ResetSortIx(int n);
  bool Reallocate(int Nc, int Nr);
  void ShrinkOrGrowInPlace(int Nr);
  int CompareRows(int a, int b, int Col, int ColSec);
  int CompareCells(int col, int a, int b);
  // One pass of the comb sort at `gap`; true if it exchanged rows.
  bool SortPass(int gap, int Col, int ColSec, int wrong_way);
  struct KeyedRow;
  // The rows of FSortIx with the sort prefixes of column Col.
  void LoadSortKeys(std::vector<KeyedRow>& keys, int Col) const;
  // SortPass over the keyed rows: the same comparisons and exchanges.
  bool KeyedSortPass(std::vector<KeyedRow>& keys, int gap, int Col, int ColSec,
                     int wrong_way) const;
  void PrefetchEntry(std::uint32_t word) const;
  bool FindCellIntern(std::u16string_view FindStr, bool MatchCase, int ColLow, int ColHigh,
                      int RowLow, int RowHigh, int& Col, int& row, bool Exact) const;
  std::u16string FoldedCell(int c, int r, bool MatchCase) const;
  void ResetPlacementHints();
  // Takes over the cells, pools, index and attributes of `other`, giving it
  // this table's; events and AllocRowsBy stay.
  void TakeStorage(TStringArray& other) noexcept;

  int FNCol = 1;
  int FNRow = 1;
  int FAllocRowsBy = 10;
  int FRAllocated = 10;
  int FNumPoolAddr = 1;
  std::vector<std::int32_t> FFirstFree;
  std::vector<TWords> FPoiArray;
  std::vector<std::int32_t> FSortIx;
  std::vector<std::unique_ptr<TStringPool>> FStgPool;
  std::vector<std::uint8_t> FRowAttrib;
  std::vector<std::uint8_t> FColAttrib;
  zyn::platform::TNotifyEvent FOnChange;
  TBeforeSortExchgEvent FOnBefSortExc;
  Zyn_zynbase::TOnPercentDoneEvent FOnPercentDone;

  // first_fit_[L]: no pool before this 0-based index can take a text of
  // length L. Free space only shrinks between Clear and GarbageCollection, so
  // the scan for a place may start here and give the same pool as a scan
  // from pool 1.
  std::array<std::int32_t, 256> first_fit_{};
  // Counts changes of cells, dimensions, sort order and comparison, so that
  // a sort sees whether an OnPercentDone handler changed the table.
  std::uint64_t store_version_ = 0;
};

}  // namespace Zyn_dstruct

#endif  // ZYN_DSTRUCT_STRINGARRAY_H_
