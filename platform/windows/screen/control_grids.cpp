// List views and the data grid.

#include <algorithm>
#include <span>
#include <unordered_map>

#include "platform/platform.h"
#include "platform/values/text.h"
#include "platform/windows/screen/control_view.h"
#include "platform/windows/screen/window_view.h"
#include "platform/windows/system/wide_text.h"

namespace pxtarvo::windows {

namespace {

constexpr int twipsPerInch = 1440;

class ReportView : public ControlView {
  public:
    ReportView(WindowView& parent, Control& control, DWORD style) : ControlView(parent, control) {
        create(WC_LISTVIEWW,
               WS_TABSTOP | LVS_REPORT | LVS_SHOWSELALWAYS | LVS_SINGLESEL | LVS_NOSORTHEADER | style,
               WS_EX_CLIENTEDGE);
        ListView_SetExtendedListViewStyle(handle(),
                                          LVS_EX_FULLROWSELECT | LVS_EX_GRIDLINES | LVS_EX_DOUBLEBUFFER);
    }

    void place() override {
        ControlView::place();
        showColumns();
    }

    void update(ControlProperty property) override {
        if (property == ControlProperty::Columns) return showColumns();
        ControlView::update(property);
    }

  protected:
    struct Column {
        std::string_view caption;
        int width;  ///< twips
        bool centred;
    };

    virtual void showColumns() = 0;

    void show(std::span<const Column> columns) {
        while (ListView_DeleteColumn(handle(), 0)) {
        }
        // The first column that a list gets is always aligned left, so a stand-in is it and goes again.
        insert(0, {"", 0, false});
        int at = 1;
        for (const Column& column : columns) insert(at++, column);
        if (at > 1) ListView_DeleteColumn(handle(), 0);
    }

  private:
    void insert(int at, const Column& column) const {
        const WideText caption(column.caption);
        LVCOLUMNW item{};
        item.mask = LVCF_FMT | LVCF_TEXT | LVCF_WIDTH;
        item.fmt = column.centred ? LVCFMT_CENTER : LVCFMT_LEFT;
        item.pszText = const_cast<wchar_t*>(caption.c_str());
        item.cx = MulDiv(column.width, parent_.dpi(), twipsPerInch);
        SendMessageW(handle(), LVM_INSERTCOLUMNW, static_cast<WPARAM>(at), reinterpret_cast<LPARAM>(&item));
    }
};

class ListControlView : public ReportView {
  public:
    ListControlView(WindowView& parent, ListView& list) : ReportView(parent, list, 0), list_(list) {}

  private:
    void showColumns() override {
        std::vector<Column> columns;
        for (const ListColumn& column : list_.columns())
            columns.push_back({column.caption, column.width, false});
        show(columns);
    }

    ListView& list_;
};

/// Asks for the texts of the rows that it paints, from a cursor of its own.
class GridView : public ReportView {
  public:
    GridView(WindowView& parent, DataGrid& grid) : ReportView(parent, grid, LVS_OWNERDATA), grid_(grid) {
        showRows();
    }

    void update(ControlProperty property) override {
        if (property != ControlProperty::Rows) return ReportView::update(property);
        showRows();
        showColumns();
    }

    /// Follows the recordset's current row; the user's own choice is the only thing that moves it.
    void refresh() override {
        const int current = currentRow();
        const int chosen = ListView_GetNextItem(handle(), -1, LVNI_SELECTED);
        if (current == chosen) return;
        following_ = true;
        if (current < 0) {
            ListView_SetItemState(handle(), -1, 0, LVIS_SELECTED | LVIS_FOCUSED);
        } else {
            ListView_SetItemState(handle(), current, LVIS_SELECTED | LVIS_FOCUSED,
                                  LVIS_SELECTED | LVIS_FOCUSED);
            ListView_EnsureVisible(handle(), current, FALSE);
        }
        following_ = false;
    }

    void notify(NMHDR& header, LRESULT&) override {
        if (header.code == LVN_GETDISPINFOW) {
            LVITEMW& item = reinterpret_cast<NMLVDISPINFOW&>(header).item;
            if (item.mask & LVIF_TEXT) item.pszText = const_cast<wchar_t*>(cell(item.iItem, item.iSubItem));
        } else if (header.code == LVN_ITEMCHANGED) {
            const auto& change = reinterpret_cast<const NMLISTVIEW&>(header);
            const bool chosen = (change.uNewState & ~change.uOldState & LVIS_SELECTED) != 0;
            if (following_ || !chosen || change.iItem < 0) return;
            grid_.window().handle([&] { grid_.userRow(change.iItem + 1); });
        }
    }

  private:
    using RowTexts = std::vector<std::u16string>;

    /// 0-based; -1 where there is none.
    int currentRow() const {
        if (!rows_) return -1;
        try {
            return std::max(-1, grid_.dataSource()->AbsolutePosition() - 1);
        } catch (const RuntimeError&) {
            return -1;  // closed by the code that uses it
        }
    }

    void showRows() {
        texts_.clear();
        rows_.reset();
        int count = 0;
        if (const ObjectRef<Recordset>& source = grid_.dataSource()) {
            rows_ = source->Clone();
            count = std::max(0, rows_->RecordCount());
        }
        following_ = true;
        ListView_SetItemCountEx(handle(), count, 0);
        following_ = false;
        InvalidateRect(handle(), nullptr, TRUE);
        refresh();
    }

    /// Without columns of its own the grid shows every field.
    void showColumns() override {
        constexpr int usualWidth = 1440;
        shown_.clear();
        texts_.clear();
        std::vector<std::string> names;
        std::vector<Column> columns;
        if (!grid_.columns().empty()) {
            for (std::size_t at = 0; at < grid_.columns().size(); ++at) {
                const GridColumn& column = grid_.columns()[at];
                if (!column.visible) continue;
                shown_.push_back(at);
                columns.push_back({column.caption, column.width, column.centred});
            }
        } else if (rows_) {
            for (std::int32_t at = 0; at < rows_->FieldCount(); ++at) names.push_back(rows_->FieldName(at));
            for (const std::string& name : names) {
                shown_.push_back(shown_.size());
                columns.push_back({name, usualWidth, false});
            }
        }
        show(columns);
    }

    std::u16string text(std::size_t field) const {
        const GridColumn column = field < grid_.columns().size() ? grid_.columns()[field] : GridColumn();
        return toUtf16(cellText(column, rows_->Fields(static_cast<std::int32_t>(field)),
                                grid_.window().platform().locale()));
    }

    const RowTexts& row(int position) {
        constexpr std::size_t keptRows = 512;
        if (const auto found = texts_.find(position); found != texts_.end()) return found->second;
        if (texts_.size() >= keptRows) texts_.clear();
        RowTexts& texts = texts_[position];
        texts.resize(shown_.size());
        try {
            rows_->AbsolutePosition(position + 1);
            for (std::size_t at = 0; at < shown_.size(); ++at) texts[at] = text(shown_[at]);
        } catch (const RuntimeError&) {
            // Painting cannot report: what could not be read stays blank.
        }
        return texts;
    }

    const wchar_t* cell(int position, int column) {
        if (!rows_ || position < 0 || column < 0) return L"";
        const RowTexts& texts = row(position);
        const auto at = static_cast<std::size_t>(column);
        return at < texts.size() ? reinterpret_cast<const wchar_t*>(texts[at].c_str()) : L"";
    }

    DataGrid& grid_;
    ObjectRef<Recordset> rows_;
    std::vector<std::size_t> shown_;  ///< fields, by column
    std::unordered_map<int, RowTexts> texts_;
    bool following_ = false;
};

}  // namespace

std::unique_ptr<ControlView> makeGridView(WindowView& parent, Control& control) {
    if (auto view = viewOfKind<ListControlView, ListView>(parent, control)) return view;
    return viewOfKind<GridView, DataGrid>(parent, control);
}

}  // namespace pxtarvo::windows
