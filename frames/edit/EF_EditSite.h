#pragma once
#include "frames/edit/EF_LinkEdit.h"

namespace frames {

// A web address; as a link it opens the text, with "http://" put in front when the text has no
// scheme of its own.
class TEditSite_Frame : public TLinkEdit_Frame {
    Q_OBJECT
public:
    using TLinkEdit_Frame::TLinkEdit_Frame;
    bool IsLinkText(const QString& text) const override { return IsSite(text); }
    QString LinkAddress(const QString& text) const override { return Address(text); }

    // One word with a dot inside it: "shop.ru", "www.shop.ru/catalog", "HTTP://shop.ru".
    static bool IsSite(const QString& text);
    static QString Address(const QString& text);
};

} // namespace frames
