#include "RowWriter.h"

#include <algorithm>
#include <utility>

#include "Numbers.h"
#include "StandardOutput.h"
#include "Text.h"

namespace qxfp {

namespace {

using TextFilter = std::string (*)(std::string_view);

std::vector<std::string> NamesOf(const std::vector<Column>& columns) {
  std::vector<std::string> names;
  for (const Column& column : columns) names.push_back(column.name);
  return names;
}

class SeparatedWriter final : public RowWriter {
 public:
  SeparatedWriter(const std::vector<Column>& columns, char separator, TextFilter filter)
      : separator_(separator), filter_(filter) {
    Write(NamesOf(columns));
  }

  void Write(std::vector<std::string> cells) override {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      if (i > 0) line += separator_;
      line += filter_(cells[i]);
    }
    Print(line + "\n");
  }

  void Close() override {}

 private:
  char separator_;
  TextFilter filter_;
};

class JsonWriter final : public RowWriter {
 public:
  explicit JsonWriter(std::vector<Column> columns) : columns_(std::move(columns)) { Print("["); }

  void Write(std::vector<std::string> cells) override {
    std::string line = isFirst_ ? "\n{" : ",\n{";
    isFirst_ = false;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      if (i > 0) line += ", ";
      line += ToJson(columns_[i].name) + ": " + Value(columns_[i], cells[i]);
    }
    Print(line + "}");
  }

  void Close() override { Print("\n]\n"); }

 private:
  static std::string Value(const Column& column, const std::string& cell) {
    if (!column.isNumber) return ToJson(cell);
    return cell.empty() || cell == kNotANumber ? "null" : cell;
  }

  std::vector<Column> columns_;
  bool isFirst_ = true;
};

// Holds the first rows back to find the widths; a longer output is not kept in memory, later rows that are
// wider merely stick out.
class TableWriter final : public RowWriter {
 public:
  explicit TableWriter(std::vector<Column> columns)
      : columns_(std::move(columns)), widths_(columns_.size(), 0) {
    Write(NamesOf(columns_));
  }

  void Write(std::vector<std::string> cells) override {
    for (std::size_t i = 0; i < cells.size(); ++i) {
      cells[i] = ForTerminal(cells[i]);
      if (!areWidthsFixed_) widths_[i] = std::max(widths_[i], DisplayWidth(cells[i]));
    }
    if (areWidthsFixed_) {
      PrintRow(cells);
      return;
    }
    held_.push_back(std::move(cells));
    if (held_.size() >= kMaxHeldRows) PrintHeldRows();
  }

  void Close() override { PrintHeldRows(); }

 private:
  static constexpr std::size_t kMaxHeldRows = 1000;

  void PrintHeldRows() {
    areWidthsFixed_ = true;
    for (const auto& row : held_) PrintRow(row);
    held_.clear();
  }

  void PrintRow(const std::vector<std::string>& cells) {
    std::string line;
    for (std::size_t i = 0; i < cells.size(); ++i) {
      const std::size_t width = DisplayWidth(cells[i]);
      const std::string padding(std::max(widths_[i], width) - width, ' ');
      if (i > 0) line += "  ";
      line += columns_[i].isNumber ? padding + cells[i] : cells[i] + padding;
    }
    line.erase(line.find_last_not_of(' ') + 1);
    Print(line + "\n");
  }

  std::vector<Column> columns_;
  std::vector<std::size_t> widths_;
  std::vector<std::vector<std::string>> held_;
  bool areWidthsFixed_ = false;
};

constexpr std::pair<const char*, RowForm> kForms[] = {
    {"tsv", RowForm::Tsv}, {"csv", RowForm::Csv}, {"json", RowForm::Json}, {"table", RowForm::Table}};

}  // namespace

std::unique_ptr<RowWriter> MakeRowWriter(RowForm form, std::vector<Column> columns) {
  switch (form) {
    case RowForm::Csv:
      return std::make_unique<SeparatedWriter>(columns, ',', ToCsv);
    case RowForm::Json:
      return std::make_unique<JsonWriter>(std::move(columns));
    case RowForm::Table:
      return std::make_unique<TableWriter>(std::move(columns));
    default:
      return std::make_unique<SeparatedWriter>(columns, '\t', WithoutControls);
  }
}

void AddRowFormOption(QXSystem::QXInterface& itf) {
  QXSystem::QXParameter out("-out", QXSystem::QXParameterType::String);
  out.SetAlias("-o").SetBrief("Form of the output");
  out.SetDetail("\n\tBy default a table on a terminal, tsv otherwise");
  for (const auto& [name, form] : kForms) out.AddLegalValue(name);
  itf.AddParameter(out);
}

RowForm GetRowForm(const QXSystem::QXInterface& itf) {
  if (!itf.IsSet("-out")) return IsOutputTerminal() ? RowForm::Table : RowForm::Tsv;
  const auto wanted = itf.Get<std::string>("-out");
  return std::ranges::find(kForms, wanted, [](const auto& entry) { return std::string(entry.first); })
      ->second;
}

}  // namespace qxfp
