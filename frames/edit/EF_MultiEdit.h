#pragma once
#include "frames/core/AbsEditFrame.h"
#include <QLineEdit>
#include <QListWidget>

class QBoxLayout;

namespace frames {

// The common part of the frames that collect several values: the list box of entered values,
// each value once, in the order entered; Delete removes the current one. The item interface
// gives the host the values.
class TValueList_Frame : public TAbsEditFrame {
    Q_OBJECT
public:
    explicit TValueList_Frame(QWidget* parent = nullptr);
    void SetReadOnly(bool value) override;
    bool IsEmpty() override;
    void Clear() override;

    int ItemsCount() const { return ListBox->count(); }
    // Value i; "" outside the list.
    QString ItemsItem(int i) const;
    QStringList Items() const;
    // The values joined by commas.
    QString ItemsList() const { return Items().join(','); }
    // Adds a value (trimmed); a blank text or one already in the list is not added. Returns
    // whether the list changed.
    bool AddText(const QString& text);
    void SetItems(const QStringList& items);

    QListWidget* ListBox;

signals:
    // The user changed the list (added or removed a value).
    void Changed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    // Puts the frame's editor above the list.
    void insertEditor(QWidget* editor);

private:
    QBoxLayout* column_;
};

// An edit and the list of values entered in it: Enter moves the edit's text into the list.
// Layout: "ListBox.RecordCount" and one "ListBox.Record<i>" per value (i from 0).
class TMultiEdit_Frame : public TValueList_Frame {
    Q_OBJECT
public:
    explicit TMultiEdit_Frame(QWidget* parent = nullptr);
    void SetReadOnly(bool value) override;
    void RestoreLayout(TConfigItem* node) override;
    void SaveLayout(TConfigItem* node) override;
    void Clear() override;

    QLineEdit* Edit;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace frames
