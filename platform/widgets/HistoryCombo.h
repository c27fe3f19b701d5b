#pragma once
#include <QComboBox>
#include <QStringList>

namespace frames::ui {

// An editable combo box that remembers the texts entered in it: the list holds the history, the
// most recent first, each text once, at most MaxHistory of them. Enter (or commitText) puts the
// current text at the top; the edited text itself is never changed by the history's upkeep.
class HistoryCombo : public QComboBox {
    Q_OBJECT
    Q_PROPERTY(int MaxHistory READ maxHistory WRITE setMaxHistory)
    Q_PROPERTY(QStringList Items READ history WRITE setHistory)
    Q_PROPERTY(QString Text READ currentText WRITE setText)
public:
    explicit HistoryCombo(QWidget* parent = nullptr);

    int maxHistory() const { return maxHistory_; }
    void setMaxHistory(int n); // at least 1; a shorter limit drops the oldest texts

    QStringList history() const;
    // Replaces the history (blank texts and repeats dropped, cut to the limit).
    void setHistory(const QStringList& texts);
    // Puts a text at the top of the history (trimmed; blank texts are ignored).
    void addToHistory(const QString& text);
    // Adds the current text to the history; returns it (trimmed).
    QString commitText();

    void setText(const QString& text) { setEditText(text); }

signals:
    // Enter was pressed in the editor and the text went into the history.
    void textCommitted(const QString& text);

protected:
    void keyPressEvent(QKeyEvent* e) override;

private:
    void fill(const QStringList& texts);
    int maxHistory_ = 20;
};

} // namespace frames::ui
