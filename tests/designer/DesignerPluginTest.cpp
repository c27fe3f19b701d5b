#include "frames/core/AbsEditFrame.h"
#include "frames/core/Registry.h"
#include "tests/designer/Snapshot.h"
#include "tests/support/DbFixture.h"
#include <QDir>
#include <QFile>
#include <QMetaProperty>
#include <QPluginLoader>
#include <QWidget>
#include <QXmlStreamReader>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>
#include <gtest/gtest.h>
#include <map>
#include <memory>

using namespace frames;

namespace {

// The class, object name and size of the one widget of a domXml text.
struct DomWidget {
    QString cls, name;
    int width = 0, height = 0;
};

QDesignerCustomWidgetCollectionInterface* loadPlugin() {
    static QPluginLoader loader(QStringLiteral(FRAMES_DESIGNER_PLUGIN));
    if (!loader.load()) ADD_FAILURE() << loader.errorString().toStdString();
    return qobject_cast<QDesignerCustomWidgetCollectionInterface*>(loader.instance());
}

DomWidget parseDom(const QString& xml) {
    DomWidget w;
    QXmlStreamReader r(xml);
    QString element;
    while (!r.atEnd()) {
        r.readNext();
        if (!r.isStartElement()) continue;
        element = r.name().toString();
        if (element == QLatin1String("widget")) {
            w.cls = r.attributes().value(QLatin1String("class")).toString();
            w.name = r.attributes().value(QLatin1String("name")).toString();
        } else if (element == QLatin1String("width")) {
            w.width = r.readElementText().toInt();
        } else if (element == QLatin1String("height")) {
            w.height = r.readElementText().toInt();
        }
    }
    EXPECT_FALSE(r.hasError()) << r.errorString().toStdString() << "\n" << xml.toStdString();
    return w;
}

} // namespace

// The plugin as the designer loads it, without a host of the application: one palette entry per
// registered frame, under its family's Russian name, each making that frame.
TEST(DesignerPlugin, OffersEveryRegisteredFrameAndCreatesIt) {
    QDesignerCustomWidgetCollectionInterface* collection = loadPlugin();
    ASSERT_NE(collection, nullptr);

    std::map<QString, QDesignerCustomWidgetInterface*> entries;
    for (QDesignerCustomWidgetInterface* w : collection->customWidgets()) {
        EXPECT_TRUE(entries.emplace(w->name(), w).second) << "twice: " << w->name().toStdString();
    }
    const Registry& registry = Registry::instance();
    ASSERT_GT(registry.classNames().size(), 100);
    QStringList missing;
    for (const QString& cls : registry.classNames())
        if (!entries.count(cls)) missing << cls;
    EXPECT_TRUE(missing.isEmpty()) << missing.join(' ').toStdString();
    EXPECT_EQ(entries.size(), size_t(registry.classNames().size()));

    // Every family has a name of its own for the palette.
    for (const QString& family : registry.families())
        EXPECT_NE(Registry::familyCaption(family), family) << family.toStdString();

    QWidget form;
    for (const QString& family : registry.families()) {
        for (const QString& cls : registry.classNames(family)) {
            SCOPED_TRACE(cls.toStdString());
            QDesignerCustomWidgetInterface* entry = entries[cls];
            if (!entry) continue;
            EXPECT_EQ(entry->group(), Registry::familyCaption(family));
            EXPECT_FALSE(entry->isContainer());
            const QString caption = FormLoader::caption(cls);
            EXPECT_EQ(entry->toolTip(), caption.isEmpty() ? cls : caption);

            // The header that code generated from a form with this frame includes.
            EXPECT_EQ(entry->includeFile(), QStringLiteral("frames/designer/%1.h").arg(cls));
            QFile header(QDir(QStringLiteral(FRAMES_DESIGNER_INCLUDE)).filePath(entry->includeFile()));
            ASSERT_TRUE(header.open(QIODevice::ReadOnly)) << header.fileName().toStdString();
            EXPECT_TRUE(header.readAll().contains(
                QStringLiteral("using %1 = frames::Designed<frames::%1>;").arg(cls).toLatin1()));

            // Dropped on a form: the frame itself, named as the registry names it.
            std::unique_ptr<QWidget> w(entry->createWidget(&form));
            auto* frame = qobject_cast<TAbsEditFrame*>(w.get());
            ASSERT_NE(frame, nullptr) << (w ? w->metaObject()->className() : "nothing") << " "
                                      << (w ? w->property("text").toString().toStdString() : "");
            EXPECT_EQ(QString::fromLatin1(frame->metaObject()->className()),
                      QStringLiteral("frames::") + cls);
            EXPECT_EQ(frame->parentWidget(), &form);

            // The designer reads every property of a dropped frame to list them: none may need
            // the database, which the designer has not got.
            const QMetaObject* mo = frame->metaObject();
            for (int i = 0; i < mo->propertyCount(); ++i) {
                const QMetaProperty p = mo->property(i);
                EXPECT_NO_THROW(p.read(frame)) << p.name();
            }

            const DomWidget dom = parseDom(entry->domXml());
            EXPECT_EQ(dom.cls, cls);
            EXPECT_EQ(dom.name, frame->objectName());
            const QSize hint = frame->sizeHint().expandedTo(frame->minimumSizeHint());
            EXPECT_EQ(QSize(dom.width, dom.height),
                      hint.isValid() && !hint.isEmpty() ? hint : QSize(200, 60));
        }
    }
}

// Loaded by a program whose host has a database, the plugin's entries make exactly the frames
// Registry::create makes: descriptions applied and AfterConstruction run, reading the database
// where a frame does so while it is set up.
class DesignerPluginWithDatabase : public frames::test::DbTest {};

TEST_F(DesignerPluginWithDatabase, EntriesMakeTheRegistrysFrames) {
    QDesignerCustomWidgetCollectionInterface* collection = loadPlugin();
    ASSERT_NE(collection, nullptr);
    QWidget form, other;
    int compared = 0;
    for (QDesignerCustomWidgetInterface* entry : collection->customWidgets()) {
        SCOPED_TRACE(entry->name().toStdString());
        std::unique_ptr<QWidget> made(entry->createWidget(&form));
        std::unique_ptr<TAbsEditFrame> reference(Registry::instance().create(entry->name(), &other));
        ASSERT_NE(qobject_cast<TAbsEditFrame*>(made.get()), nullptr);
        EXPECT_EQ(frames::test::snapshot(made.get()), frames::test::snapshot(reference.get()));
        ++compared;
    }
    EXPECT_EQ(compared, Registry::instance().classNames().size());
    EXPECT_TRUE(host->errors().isEmpty()) << host->errors().join('\n').toStdString();
}
