#pragma once
#include "frames/core/ConfigItem.h"
#include <QFrame>
#include <QLabel>

namespace frames {

// The frame contract. A host form creates a frame (construct, then AfterConstruction: the
// registry does both), calls Init once its data is bound, RestoreLayout, lets the user work,
// reads the value, then SaveLayout and FormClose. Overrides call the inherited operation first
// (Init, SetReadOnly, IsEmpty, RestoreLayout, SaveLayout) or last (FormClose).
class TAbsEditFrame : public QFrame {
    Q_OBJECT
    Q_PROPERTY(QString Caption READ Caption WRITE SetCaption)
public:
    explicit TAbsEditFrame(QWidget* parent = nullptr);
    ~TAbsEditFrame() override;

    // Set-up after construction and after the form description was applied.
    virtual void AfterConstruction() {}

    // Contract operations, in slot order.
    virtual void SetEnabled(bool value);
    virtual void SetFocus();
    virtual void SetReadOnly(bool value);
    virtual void SetRequired(bool value);
    virtual bool GetReadOnly() const;
    virtual void RestoreLayout(TConfigItem* node);
    virtual void SaveLayout(TConfigItem* node);
    virtual void Init();
    virtual void DataRefresh();
    virtual bool IsEmpty();
    virtual void Clear(); // not implemented in the base: raises an error
    virtual void FormShow();
    virtual void FormClose();
    virtual void Save();

    bool GetRequired() const { return required_; }
    QString Caption() const { return lbSelect->text(); }
    void SetCaption(const QString& c) { lbSelect->setText(c); }

    // The nearest ancestor that is a frame or a host form (plain panels in between do not
    // count); nullptr for a top-level frame.
    QObject* Owner() const;

    QLabel* lbSelect;

protected:
    // Where descendants put their editor; lbSelect sits above it.
    QWidget* body() const { return body_; }

private:
    QWidget* body_;
    bool readOnly_ = false;
    bool required_ = false;
};

// The owner of an object in the frames' sense (see TAbsEditFrame::Owner).
QObject* ownerOf(const QObject* o);

} // namespace frames
