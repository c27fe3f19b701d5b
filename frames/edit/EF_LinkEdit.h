#pragma once
#include "frames/edit/EF_DBEdit.h"

namespace frames {

// A data-bound address edit that works as a link: when the text is an address (IsLinkText) it
// shows blue and underlined with the hand cursor, and Ctrl+Enter or a Ctrl+left click opens it
// through the host's desktop service. The style follows the text in Init and when the editor is
// left.
class TLinkEdit_Frame : public TDBEdit_Frame {
    Q_OBJECT
public:
    explicit TLinkEdit_Frame(QWidget* parent = nullptr);
    void Init() override;

    // The link flag, as of the last restyle.
    bool IsLink() const { return link_; }
    // Recomputes the link flag from the text and styles the editor by it.
    void RestyleLink();
    // Opens the address when the text is one; returns whether it did.
    bool OpenLink();

    virtual bool IsLinkText(const QString& text) const = 0;
    // What the desktop is asked to open for the text.
    virtual QString LinkAddress(const QString& text) const = 0;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool link_ = false;
};

} // namespace frames
