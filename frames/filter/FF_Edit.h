#pragma once
#include "frames/core/SetFilter_EF.h"
#include "frames/edit/EF_MultiEditComboBox.h"

namespace frames {

// The text pattern filter: a combo box over a list of patterns ("*" for any text). The condition
// asks the column, in upper case, to be like any of the patterns; with no pattern at all it asks
// the column to be null or blank.
class TEdit_FF : public TSetFilter_EF {
    Q_OBJECT
public:
    explicit TEdit_FF(QWidget* parent = nullptr);

    void SetReadOnly(bool value) override;
    // The base's "cbSet.Checked" and the patterns and history under "MultiEditComboBox_EF".
    void SaveLayout(TConfigItem* node) override;
    void RestoreLayout(TConfigItem* node) override;
    // The host's clear of the panel leaves the patterns as they are.
    void Clear() override {}

    // ---- item interface: the patterns
    Q_INVOKABLE int ItemsCount() override;
    Q_INVOKABLE QString ItemsItem(int i) override;
    // Adds a pattern (a blank one or one already there is not added).
    Q_INVOKABLE void AddText(const QString& text) override;

    // "" when off; "(f is null) or (trim(f)='')" without patterns; otherwise
    // "upper(f) like 'P1' or upper(f) like 'P2' ..." with each pattern's "*" turned into "%", its
    // quotes doubled and its letters in upper case. The host puts the whole in parentheses.
    QString SQL(const QString& fieldName) override;

    // The user changed the combo's text or the list of patterns: ticks cbSet.
    virtual void MultiEditComboBox_EFComboBoxChange(QObject* sender);

    TMultiEditComboBox_EF* MultiEditComboBox_EF;
};

} // namespace frames
