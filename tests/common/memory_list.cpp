#include "tests/common/memory_list.h"

namespace pxtarvo::test {

namespace {

struct ListContent {
    std::vector<ListRow> rows;
    std::int32_t stateAfterOpen = adStateOpen;
};

class ListRows : public portable::RowStream {
  public:
    ListRows(std::shared_ptr<const ListContent> content, std::vector<ListRow> count)
        : content_(std::move(content)), count_(std::move(count)) {}

    std::int32_t columnCount() const override {
        return rows().empty() ? 0 : static_cast<std::int32_t>(rows().front().size());
    }
    const std::string& columnName(std::int32_t) const override { return name_; }
    bool next() override {
        if (at_ == rows().size()) return false;
        if (rows()[at_].empty()) throw RuntimeError(ErrorNumber::ProviderFailure);
        ++at_;
        return true;
    }
    Variant value(std::int32_t position) const override {
        return rows()[at_ - 1][static_cast<std::size_t>(position)];
    }
    void rewind() override { at_ = 0; }

  private:
    const std::vector<ListRow>& rows() const { return count_.empty() ? content_->rows : count_; }

    std::shared_ptr<const ListContent> content_;
    std::vector<ListRow> count_;
    std::size_t at_ = 0;
    std::string name_ = "columna";
};

class MemoryList : public Connection, public portable::RowSource {
  public:
    explicit MemoryList(std::shared_ptr<const ListContent> content) : content_(std::move(content)) {}

    void ConnectionString(std::string_view) override {}
    void Open(std::string_view, std::string_view, std::int32_t) override {
        state_ = content_->stateAfterOpen;
    }
    std::int32_t State() const override { return state_; }
    ObjectRef<Recordset> Execute(std::string_view, std::int32_t) override { return {}; }
    void BeginTrans() override {}
    void CommitTrans() override {}
    void RollbackTrans() override {}

    std::unique_ptr<portable::RowStream> openRows(std::string_view statement) override {
        std::vector<ListRow> count;
        if (statement.starts_with("SELECT count(*)")) {
            count.push_back({Variant(static_cast<std::int32_t>(content_->rows.size()))});
        }
        return std::make_unique<ListRows>(content_, std::move(count));
    }

  private:
    std::shared_ptr<const ListContent> content_;
    std::int32_t state_ = adStateClosed;
};

}  // namespace

ListRow listRow(Variant code, Variant price, Variant group, Variant description, Variant date) {
    return {std::int32_t{0},  std::move(code), Null{}, std::move(price), std::move(date),
            std::move(group), Null{},          Null{}, Null{},           std::move(description)};
}

std::function<ObjectRef<Connection>(const portable::DrivePaths&)> memorySource(std::vector<ListRow> rows,
                                                                               std::int32_t stateAfterOpen) {
    const auto content = std::make_shared<const ListContent>(ListContent{std::move(rows), stateAfterOpen});
    return [content](const portable::DrivePaths&) -> ObjectRef<Connection> {
        return makeObject<MemoryList>(content);
    };
}

}  // namespace pxtarvo::test
