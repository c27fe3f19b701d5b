#pragma once
#include <QString>

class QWidget;

namespace frames {

class TAbsEditFrame;

// The second step of Registry::create, for a frame constructed elsewhere: names it after its
// class ("TBank_LF" -> "Bank_LF"), applies the class's form descriptions (the inherited ones
// first), then runs AfterConstruction. Throws std::runtime_error when a description does not
// apply.
void finishFrame(TAbsEditFrame* frame, const QString& className);

// A frame made by code that uic generated from a designer form, `new TBank_LF(parent)`: the
// header such a form includes (frames/designer/TBank_LF.h) names Designed<frames::TBank_LF>
// TBank_LF, so the frame is finished in its constructor exactly as Registry::create finishes one.
// For Qt the object is a T (same meta-object, qobject_cast and properties); the description
// applied is the one of T's class name. A caption given on the designer form (the property
// Caption) reaches uic's code as setCaption.
template <typename T> class Designed : public T {
public:
    explicit Designed(QWidget* parent = nullptr) : T(parent) {
        finishFrame(this,
                    QString::fromLatin1(T::staticMetaObject.className()).section(QLatin1String("::"), -1));
    }
    void setCaption(const QString& caption) { T::SetCaption(caption); }
};

} // namespace frames
