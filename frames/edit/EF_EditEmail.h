#pragma once
#include "frames/edit/EF_LinkEdit.h"

namespace frames {

// An e-mail address; as a link it opens "mailto:" and the address.
class TEditEmail_Frame : public TLinkEdit_Frame {
    Q_OBJECT
public:
    using TLinkEdit_Frame::TLinkEdit_Frame;
    bool IsLinkText(const QString& text) const override { return IsEmail(text); }
    QString LinkAddress(const QString& text) const override { return "mailto:" + text; }

    // Something before "@"; after it at least 5 characters with a "."; only Latin letters,
    // digits, ".", "-", "_", "+" and the one "@".
    static bool IsEmail(const QString& text);
};

} // namespace frames
