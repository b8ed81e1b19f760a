// The grid over a long result: it shows the rows in sight, and reads no others.

#include <gtest/gtest.h>

#include <functional>
#include <memory>

#include "platform/values/number_text.h"
#include "platform/window.h"
#include "platform/windows/screen/window_handles.h"
#include "platform/windows/windows_platform.h"

namespace pxtarvo::windows {

namespace {

constexpr std::int32_t rowCount = 10000;

/// Rows that hold their own position; counts the rows read by all its clones.
class CountedRows : public Recordset {
  public:
    explicit CountedRows(std::shared_ptr<int> reads) : reads_(std::move(reads)) {}

    void Open(std::string_view, const ObjectRef<Connection>&, std::int32_t, std::int32_t,
              std::int32_t) override {}
    void Close() override {}
    std::int32_t State() const override { return adStateOpen; }
    bool Bof() const override { return false; }
    bool Eof() const override { return position_ > rowCount; }
    void MoveFirst() override { position_ = 1; }
    void MoveNext() override { ++position_; }
    std::int32_t RecordCount() const override { return rowCount; }
    std::int32_t AbsolutePosition() const override { return position_; }
    void AbsolutePosition(std::int32_t position) override { position_ = position; }
    std::int32_t FieldCount() const override { return 1; }
    std::string FieldName(std::int32_t) const override { return "Codigo"; }
    Variant Fields(std::int32_t) const override {
        ++*reads_;
        return "C" + plainNumber(position_);
    }
    Variant Fields(std::string_view) const override { return Fields(0); }
    ObjectRef<Recordset> Clone() const override { return makeObject<CountedRows>(reads_); }

  private:
    std::shared_ptr<int> reads_;
    std::int32_t position_ = 1;
};

class GridWindow : public Window {
  public:
    explicit GridWindow(Platform& platform)
        : Window(platform, {.name = "grid", .caption = "grid", .width = 300, .height = 200}),
          grid(*this, {.name = "grid", .rect = {0, 0, 300, 200}, .tabIndex = 0}) {}
    DataGrid grid;

  protected:
    void Form_Load() override {}
};

GridWindow* shown = nullptr;
std::function<void()> meanwhile;

void CALLBACK act(HWND, UINT, UINT_PTR timer, DWORD) {
    KillTimer(nullptr, timer);
    meanwhile();
    shown->Unload();
}

std::string cellOf(HWND list, int row) {
    wchar_t text[64] = L"";
    LVITEMW item{};
    item.pszText = text;
    item.cchTextMax = static_cast<int>(std::size(text));
    SendMessageW(list, LVM_GETITEMTEXTW, static_cast<WPARAM>(row), reinterpret_cast<LPARAM>(&item));
    std::string narrow;
    for (const wchar_t* unit = text; *unit; ++unit) narrow += static_cast<char>(*unit);
    return narrow;
}

TEST(Grid, ShowsTenThousandRowsAndReadsThoseInSight) {
    WindowsPlatform platform;
    GridWindow window(platform);
    const auto reads = std::make_shared<int>(0);
    const auto rows = std::make_shared<CountedRows>(reads);
    window.grid.setDataSource(ObjectRef<Recordset>(rows));
    window.grid.setColumns({{.caption = "Codigo", .width = 1900}});
    shown = &window;
    meanwhile = [&] {
        const HWND list = handleOf(window.grid);
        EXPECT_EQ(ListView_GetItemCount(list), rowCount);
        EXPECT_EQ(cellOf(list, 0), "C1");
        ListView_EnsureVisible(list, rowCount - 1, FALSE);
        UpdateWindow(list);
        EXPECT_EQ(cellOf(list, rowCount - 1), "C10000");
        EXPECT_LT(*reads, 200);
        EXPECT_EQ(rows->AbsolutePosition(), 1) << "painting and scrolling move nothing";

        ListView_SetItemState(list, 5000, LVIS_SELECTED | LVIS_FOCUSED, LVIS_SELECTED | LVIS_FOCUSED);
        EXPECT_EQ(rows->AbsolutePosition(), 5001) << "a row chosen moves the result";
        rows->AbsolutePosition(7001);
        platform.desktop().doEvents();
        EXPECT_EQ(ListView_GetNextItem(list, -1, LVNI_SELECTED), 7000) << "and the grid follows it";
        EXPECT_EQ(rows->AbsolutePosition(), 7001);
        EXPECT_LT(*reads, 400);
    };
    SetTimer(nullptr, 0, 1, &act);
    platform.desktop().showModal(window);
}

}  // namespace

}  // namespace pxtarvo::windows
