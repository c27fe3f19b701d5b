#pragma once
#include <QJsonObject>
#include <QString>
#include <QStringList>
#include <functional>
#include <map>

class QWidget;

namespace frames {

class TAbsEditFrame;

// A frame class of the package: its name, its family (the folder it lives in) and how to make one.
struct FrameClass {
    QString name;
    QString family;
    std::function<TAbsEditFrame*(QWidget* parent)> make;
};

// Every frame class of the package by name. create() builds a frame in two steps: construct and
// apply the form descriptions (the inherited ones first), then AfterConstruction.
class Registry {
public:
    static Registry& instance();

    void add(FrameClass c);
    const FrameClass* find(const QString& className) const;
    QStringList classNames() const; // sorted
    QStringList classNames(const QString& family) const;
    QStringList families() const;
    // What the family is called for the user ("Выбор из справочника" for "lookup"); the family
    // itself when it has no name of its own.
    static QString familyCaption(const QString& family);

    // Throws std::runtime_error for an unknown class or a description that does not apply.
    TAbsEditFrame* create(const QString& className, QWidget* parent = nullptr) const;

private:
    std::map<QString, FrameClass> classes_;
};

// Registers a class at library load: FRAMES_REGISTER(TBank_LF, "lookup").
template <typename T> struct Registrar {
    Registrar(const char* name, const char* family) {
        Registry::instance().add({name, family, [](QWidget* p) -> TAbsEditFrame* { return new T(p); }});
    }
};
#define FRAMES_REGISTER(Class, family)                                                                       \
    static const ::frames::Registrar<Class> registrar_##Class(#Class, family)

// Form descriptions: one JSON resource per class under :/forms/<family>/<Class>.json.
class FormLoader {
public:
    // The description of a class, or an empty object when it has none.
    static QJsonObject description(const QString& className);
    // Applies the descriptions of the class's chain (inherited first) to the object. Throws
    // std::runtime_error naming the class, component and property that do not exist.
    static void apply(QObject* target, const QString& className);
    // Applies one description (its properties and components) as the class named.
    static void applyDescription(QObject* target, const QJsonObject& d, const QString& className);
    // The chain of descriptions from the root class down to className.
    static QStringList chain(const QString& className);
    // What the frame is called for the user: from the nearest class of the chain that names it,
    // the "caption" of its description, else the text of its label lbSelect; else empty.
    static QString caption(const QString& className);
};

} // namespace frames

// The package's entry point, looked up by name by a host that loads the library at run time.
extern "C" frames::Registry* frames_registry();
