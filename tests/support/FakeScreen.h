#pragma once
#include <algorithm>
#include <string>
#include <vector>

#include "platform/Applications.h"
#include "platform/Frontmost.h"
#include "screen/InfoBarView.h"
#include "screen/ResultTableView.h"
#include "screen/SearchFieldView.h"
#include "screen/WindowView.h"

/// A window without a screen: remembers what it was told, and lets a test be the user.
struct FakeWindow : WindowView {
    void setDelegate(WindowViewDelegate* d) override { delegate = d; }
    void show() override { visible = true; }
    void hide() override { visible = false; }
    bool isVisible() const override { return visible; }
    bool isActive() const override { return visible && active; }
    Rect frame() const override { return place; }
    void setFrame(Rect frame, bool) override { place = frame; }
    Rect screenFrame() const override { return {0, 0, 1440, 900}; }
    Rect visibleScreenFrame() const override { return {0, 0, 1440, 870}; }

    WindowViewDelegate* delegate = nullptr;
    bool visible = false, active = true;
    Rect place;
};

struct FakeField : SearchFieldView {
    void setDelegate(SearchFieldViewDelegate* d) override { delegate = d; }
    std::u16string text() const override { return content; }
    void setText(const std::u16string& text) override { content = text; }
    void setPlaceholder(const std::string& text) override { placeholder = text; }
    TextRange selection() const override { return {content.size(), 0}; }
    void setSelection(TextRange) override {}
    void selectAll() override {}
    void focus() override {}
    void setEnabled(bool) override {}

    /// Unit by unit, as keys come.
    void type(std::u16string_view text) {
        for (const char16_t unit : text) {
            content += unit;
            delegate->searchFieldTextDidChange();
        }
    }
    bool press(uint64_t keyCode, uint64_t modifierFlags = 0) {
        return delegate->searchFieldKeyDown({.keyCode = keyCode, .modifierFlags = modifierFlags});
    }

    SearchFieldViewDelegate* delegate = nullptr;
    std::u16string content;
    std::string placeholder;
};

struct FakeTable : ResultTableView {
    void setData(const ResultTableData* d) override { data = d; }
    void setDelegate(ResultTableViewDelegate* d) override { delegate = d; }
    void reloadData() override { selected.clear(); }
    void reloadRows(const std::vector<size_t>&) override { partialReloads++; }
    void setRowHeight(double) override {}
    void setHasVerticalScroller(bool has) override { scroller = has; }
    void selectRow(size_t row, bool extend) override {
        if (!extend) selected.clear();
        selected.insert(std::lower_bound(selected.begin(), selected.end(), row), row);
        if (delegate) delegate->tableViewSelectionDidChange();
    }
    std::vector<size_t> selectedRows() const override { return selected; }
    void scrollRowToVisible(size_t) override {}
    Point clipOrigin() const override { return {}; }
    void setClipOrigin(Point) override {}

    std::vector<std::string> names() const {
        std::vector<std::string> out;
        for (size_t row = 0; row < data->numberOfRows(); row++) out.push_back(data->row(row).name);
        return out;
    }

    const ResultTableData* data = nullptr;
    ResultTableViewDelegate* delegate = nullptr;
    std::vector<size_t> selected;
    bool scroller = false;
    int partialReloads = 0;
};

struct FakeInfoBar : InfoBarView {
    void setText(const std::string& t) override { text = t; }
    void setToolTip(const std::string& t) override { toolTip = t; }
    void setErrorLook(bool isError) override { error = isError; }
    void setBusy(bool b) override { busy = b; }

    std::string text, toolTip;
    bool error = false, busy = false;
};

/// Applications that note what they are asked to open.
struct RecordingApplications : Applications {
    Result<void> openInDefaultApplication(const FileURL& url) override {
        opened.push_back(url);
        return {};
    }
    std::vector<FileURL> opened;
};

struct RecordingFrontmost : Frontmost {
    void save() override { saved++; }
    void activatePrevious() override { givenBack++; }
    int saved = 0, givenBack = 0;
};
