#include "platform/widgets/LookupCombo.h"
#include "Tables.h"
#include "platform/db/DataSet.h"
#include "platform/db/Field.h"
#include "platform/widgets/ErrorReporter.h"
#include "tests/db/DbTestUtil.h"
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QScrollBar>
#include <QTest>
#include <QThread>
#include <QToolButton>
#include <gtest/gtest.h>

using namespace frames;
using namespace widgets_test;

namespace {

struct Combo {
    Tables tb;
    ui::LookupCombo lc;
    QStringList events;

    explicit Combo(bool bound = true) {
        lc.setLookupSource(&tb.colorsSrc);
        lc.setLookupField("ID");
        lc.setLookupDisplay("NAME");
        if (bound) {
            lc.setDataSource(&tb.goodsSrc);
            lc.setDataField("COLOR_ID");
        }
        lc.OnChange = [this](QObject*) { events << "change"; };
        lc.OnClick = [this](QObject*) { events << "click"; };
        lc.resize(300, 24);
        lc.show();
    }
    QString shown() const { return lc.comboBox()->currentText(); }
};

} // namespace

TEST(LookupCombo, BoundComboFollowsTheRecord) {
    Combo c;
    EXPECT_EQ(c.shown(), "Green");
    c.tb.goods.next();
    EXPECT_EQ(c.shown(), "Blue");
    EXPECT_EQ(c.tb.colors.recNo(), 2); // the list's cursor sits on the shown row
    c.tb.goods.next();                 // null key
    EXPECT_FALSE(c.lc.keyValue().isValid());
    c.tb.goods.next(); // a key the list does not hold shows nothing
    EXPECT_EQ(c.shown(), "");
    EXPECT_EQ(c.lc.displayText(), "");
    EXPECT_EQ(c.lc.keyValue().toInt(), 99);
    // An edit of the record's field shows at once.
    c.tb.goods.edit();
    c.tb.goods.fieldByName("COLOR_ID")->setValue(1);
    EXPECT_EQ(c.shown(), "Red");
    c.tb.goods.cancel();
    EXPECT_EQ(c.shown(), "");
    // Reloading the list rebuilds the key index.
    c.tb.colors.appendRecord({99, "Black", 0});
    EXPECT_EQ(c.shown(), "Black");
    EXPECT_TRUE(c.events.isEmpty()); // following the record fires nothing
}

TEST(LookupCombo, ChoosingARowWritesTheKeyAndFiresChangeThenClick) {
    Combo c;
    ASSERT_EQ(c.tb.goods.state(), db::DataSetState::Browse);
    c.lc.dropDown();
    ASSERT_TRUE(c.lc.isDroppedDown());
    QAbstractItemView* view = c.lc.comboBox()->view();
    view->setCurrentIndex(view->model()->index(0, 0));
    QTest::keyClick(view, Qt::Key_Return);
    EXPECT_FALSE(c.lc.isDroppedDown());
    EXPECT_EQ(c.events, QStringList({"change", "click"}));
    EXPECT_EQ(c.tb.goods.fieldByName("COLOR_ID")->asInteger(), 1);

    // The same row again: a click, no change.
    c.events.clear();
    c.lc.dropDown();
    view->setCurrentIndex(view->model()->index(0, 0));
    c.lc.closeUp(true);
    EXPECT_EQ(c.events, QStringList({"click"}));

    // Closing without accepting changes nothing.
    c.events.clear();
    c.lc.dropDown();
    view->setCurrentIndex(view->model()->index(2, 0));
    c.lc.closeUp(false);
    EXPECT_TRUE(c.events.isEmpty());
    EXPECT_EQ(c.tb.goods.fieldByName("COLOR_ID")->asInteger(), 1);

    // A read-only combo neither opens nor takes keyboard choices.
    c.lc.setReadOnly(true);
    c.lc.comboBox()->setFocus();
    QTest::keyClick(c.lc.comboBox(), Qt::Key_Down);
    EXPECT_EQ(c.tb.goods.fieldByName("COLOR_ID")->asInteger(), 1);
    EXPECT_TRUE(c.events.isEmpty());
}

TEST(LookupCombo, DeleteKeyClears) {
    Combo c;
    QComboBox* box = c.lc.comboBox();
    QList<int> seen;
    bool swallow = false;
    c.lc.OnKeyDown = [&](QObject*, int& key, Qt::KeyboardModifiers) {
        if (key == Qt::Key_Control || key == Qt::Key_Shift) return; // the modifier's own press
        seen << key;
        if (swallow) key = 0;
    };

    // Modifier held, read-only, clearing off, or the handler zeroed the key: nothing happens.
    QTest::keyClick(box, Qt::Key_Delete, Qt::ControlModifier);
    QTest::keyClick(box, Qt::Key_Delete, Qt::ShiftModifier);
    c.lc.setReadOnly(true);
    QTest::keyClick(box, Qt::Key_Delete);
    c.lc.setReadOnly(false);
    c.lc.setEscapeClear(false);
    QTest::keyClick(box, Qt::Key_Delete);
    c.lc.setEscapeClear(true);
    swallow = true;
    QTest::keyClick(box, Qt::Key_Delete);
    EXPECT_EQ(seen.size(), 5);
    EXPECT_EQ(c.tb.goods.state(), db::DataSetState::Browse);
    EXPECT_TRUE(c.events.isEmpty());

    // Plain Delete: the bound field goes null and OnChange fires once.
    swallow = false;
    QTest::keyClick(box, Qt::Key_Delete);
    EXPECT_FALSE(c.lc.keyValue().isValid());
    EXPECT_TRUE(c.tb.goods.fieldByName("COLOR_ID")->isNull());
    EXPECT_EQ(c.events, QStringList({"change"}));
    // Already empty: no second change.
    QTest::keyClick(box, Qt::Key_Delete);
    EXPECT_EQ(c.events, QStringList({"change"}));
}

TEST(LookupCombo, DropDownConsentAndDialogButton) {
    Combo c;
    QComboBox* box = c.lc.comboBox();
    int asked = 0, dialogs = 0;
    bool allow = false;
    c.lc.OnDropDown = [&](QObject* sender, bool& show) {
        EXPECT_EQ(sender, &c.lc);
        ++asked;
        show = allow;
    };
    c.lc.OnDlgClick = [&](QObject*) { ++dialogs; };

    QTest::keyClick(box, Qt::Key_F2);
    EXPECT_EQ(asked, 1);
    EXPECT_FALSE(c.lc.isDroppedDown());
    allow = true;
    QTest::keyClick(box, Qt::Key_Down, Qt::AltModifier);
    EXPECT_EQ(asked, 2);
    EXPECT_TRUE(c.lc.isDroppedDown());
    c.lc.closeUp(false);

    // Read-only: the list stays shut without asking, the button still reports.
    c.lc.setReadOnly(true);
    QTest::keyClick(box, Qt::Key_F2);
    EXPECT_EQ(asked, 2);
    EXPECT_FALSE(c.lc.isDroppedDown());
    QTest::mouseClick(c.lc.button(), Qt::LeftButton);
    EXPECT_EQ(dialogs, 1);
}

TEST(LookupCombo, UnboundKeyEmptyEntryAndErrors) {
    Combo c(false);
    EXPECT_EQ(c.shown(), "");
    c.lc.setKeyValue(3);
    EXPECT_EQ(c.shown(), "Blue");
    EXPECT_EQ(c.events, QStringList({"change"}));
    c.lc.setKeyValue(QVariant(qint64(3))); // the same key in another type
    c.lc.setKeyValue("3");
    EXPECT_EQ(c.events.size(), 1);
    c.lc.setKeyValue(42);
    EXPECT_EQ(c.shown(), "");
    EXPECT_EQ(c.events.size(), 2);
    c.lc.clear(); // by code: no change event
    EXPECT_EQ(c.events.size(), 2);

    // An entry for "no value" leads the list; choosing it empties the key.
    c.lc.setEmptyValue("(none)");
    EXPECT_EQ(c.shown(), "(none)");
    c.lc.setKeyValue(1);
    c.events.clear();
    c.lc.dropDown();
    c.lc.comboBox()->view()->setCurrentIndex(c.lc.comboBox()->model()->index(0, 0));
    c.lc.closeUp(true);
    EXPECT_FALSE(c.lc.keyValue().isValid());
    EXPECT_EQ(c.events, QStringList({"change", "click"}));

    // A handler that throws inside a key press is reported, not propagated.
    QStringList reported;
    auto saved = ui::errorReporter;
    ui::errorReporter = [&](const QString& t) { reported << t; };
    c.lc.setKeyValue(2);
    c.lc.OnChange = [](QObject*) { throw db::Error::configuration("boom"); };
    c.lc.comboBox()->setFocus();
    EXPECT_NO_THROW(QTest::keyClick(c.lc.comboBox(), Qt::Key_Delete));
    ui::errorReporter = saved;
    EXPECT_EQ(reported, QStringList({"boom"}));
}

TEST(LookupCombo, SeveralDisplayColumnsAndImages) {
    Combo c;
    c.lc.setLookupDisplay("NAME; ID");
    EXPECT_EQ(c.lc.comboBox()->model()->columnCount(), 2);
    EXPECT_EQ(c.shown(), "Green");

    // The image handler reads the list's current row, which is the row asked for.
    QList<QPair<int, int>> asked;
    c.lc.OnGetImage = [&](QObject*, int row) {
        const int color = c.tb.colors.fieldByName("COLOR")->asInteger();
        asked << qMakePair(row, color);
        QPixmap pm(8, 8);
        pm.fill(QColor::fromRgb(QRgb(color)));
        return QIcon(pm);
    };
    c.tb.colors.appendRecord({4, "White", 0xFFFFFF}); // reload: images are asked afresh
    c.tb.goods.first();
    ASSERT_EQ(c.tb.colors.recNo(), 1);
    QAbstractItemModel* m = c.lc.comboBox()->model();
    EXPECT_FALSE(m->data(m->index(2, 0), Qt::DecorationRole).value<QIcon>().isNull());
    ASSERT_FALSE(asked.isEmpty());
    EXPECT_EQ(asked.last(), qMakePair(2, 0x0000FF));
    EXPECT_EQ(c.tb.colors.recNo(), 1); // put back
    const int calls = asked.size();
    m->data(m->index(2, 0), Qt::DecorationRole); // kept, not asked again
    EXPECT_EQ(asked.size(), calls);
}

TEST(LookupCombo, LargeList) {
    db::MemTable list;
    fillNumbered(list, 200000);
    db::DataSource src(&list);
    ui::LookupCombo lc;
    lc.setLookupSource(&src);
    lc.setLookupField("ID");
    lc.setLookupDisplay("NAME");
    lc.setDropDownCount(8);
    lc.show();
    lc.setKeyValue(199998);
    EXPECT_EQ(lc.comboBox()->currentText(), "Name 199998");
    int images = 0;
    lc.OnGetImage = [&](QObject*, int) {
        ++images;
        return QIcon();
    };
    lc.dropDown();
    EXPECT_TRUE(lc.isDroppedDown());
    QCoreApplication::processEvents();
    // Opening does not go through the rows: only the shown ones are asked for their image.
    EXPECT_GT(images, 0);
    EXPECT_LT(images, 100);
    QAbstractItemView* view = lc.comboBox()->view();
    EXPECT_EQ(view->currentIndex().row(), 199998);
    // The open list shows about DropDownCount rows, the current one among them, and scrolls over
    // every row.
    auto firstShown = [&] { return view->indexAt(QPoint(2, 2)).row(); };
    auto shows = [&](int row) {
        return view->viewport()->rect().intersects(view->visualRect(view->model()->index(row, 0)));
    };
    EXPECT_LE(view->viewport()->height(), 12 * view->sizeHintForRow(0));
    EXPECT_GE(view->viewport()->height(), 4 * view->sizeHintForRow(0));
    EXPECT_TRUE(shows(199998));
    EXPECT_GT(firstShown(), 199980);
    QTest::keyClick(view, Qt::Key_Home);
    EXPECT_EQ(view->currentIndex().row(), 0);
    EXPECT_EQ(firstShown(), 0);
    QTest::keyClick(view, Qt::Key_PageDown);
    const int afterPage = view->currentIndex().row();
    EXPECT_GT(afterPage, 3);
    EXPECT_LT(afterPage, 12);
    EXPECT_TRUE(shows(afterPage));
    view->verticalScrollBar()->setValue(view->verticalScrollBar()->maximum());
    QCoreApplication::processEvents();
    EXPECT_TRUE(shows(199999));
    EXPECT_EQ(view->model()->data(view->indexAt(QPoint(2, 2))).toString(),
              QString("Name %1").arg(firstShown()));
    QTest::keyClick(view, Qt::Key_End);
    EXPECT_EQ(view->currentIndex().row(), 199999);
    QTest::keyClick(view, Qt::Key_Return);
    EXPECT_FALSE(lc.isDroppedDown());
    EXPECT_EQ(lc.keyValue().toInt(), 199999);
    EXPECT_EQ(lc.comboBox()->currentText(), "Name 199999");
}

namespace {

// Russian names in the order the server gives them for "order by" a Cyrillic collation, or in
// the order they were inserted.
class TypeAhead : public db::test::ScratchDb {
protected:
    void SetUp() override {
        ScratchDb::SetUp();
        exec("create table names (id integer not null primary key, name varchar(60) collate PXW_CYRL)");
        const QStringList first = {"Иванов", "ёлкин",   "Ёжиков", "Елисеев", "ежов",   "Яковлев", "яшин",
                                   "Жуков",  "Эйсмонт", "Юдин",   "Абрамов", "Щукин",  "Ершов",   "Ёлочкин",
                                   "Ясенев", "Zeta",    "alpha",  "Beta",    "«Ёлка»", "Орлов"};
        QString block = "execute block as declare k integer = 0; begin while (k < 150) do begin\n";
        for (int i = 0; i < first.size(); ++i)
            block += QString("insert into names values (:k * %1 + %2, '%3 ' || mod(:k * 919, 1000));\n")
                         .arg(first.size())
                         .arg(i)
                         .arg(first[i]);
        exec(block + "k = k + 1; end end");
    }
    // A lookup over the names in the given order, with nothing chosen.
    void open(const QString& order) {
        ds = std::make_unique<db::DataSet>(db.get(), read.get());
        ds->setSelectSql("select id, name from names order by " + order);
        ds->open();
        src = std::make_unique<db::DataSource>(ds.get());
        lc = std::make_unique<ui::LookupCombo>();
        lc->setLookupSource(src.get());
        lc->setLookupField("ID");
        lc->setLookupDisplay("NAME");
        // As the frames do: a key handler that lets letters through.
        lc->OnKeyDown = [this](QObject*, int&, Qt::KeyboardModifiers) { ++keysSeen; };
        lc->show();
    }
    QString nameAt(int row) const { return ds->valueAt(row, 1).toString(); }
    // The first row from the top whose name starts with prefix, regardless of case.
    int expected(const QString& prefix) const {
        for (int r = 0; r < ds->recordCount(); ++r)
            if (nameAt(r).startsWith(prefix, Qt::CaseInsensitive)) return r;
        return -1;
    }
    // Types text into the closed combo as a new search; returns the chosen row's name.
    QString type(const QString& text) {
        newSearch();
        for (const QChar ch : text) {
            QKeyEvent press(QEvent::KeyPress, ch.toUpper().unicode(), Qt::NoModifier, QString(ch));
            QApplication::sendEvent(lc->comboBox(), &press);
            QApplication::setKeyboardInputInterval(1000000); // the next letters go on with it
        }
        QApplication::setKeyboardInputInterval(400);
        return lc->displayText();
    }
    // The next letter starts a new search, as after a pause.
    static void newSearch() {
        QApplication::setKeyboardInputInterval(0);
        QThread::msleep(2);
    }
    std::unique_ptr<db::DataSet> ds;
    std::unique_ptr<db::DataSource> src;
    std::unique_ptr<ui::LookupCombo> lc;
    int keysSeen = 0;
};

} // namespace

// Type-ahead on a list ordered by name lands on the first row that starts with what was typed,
// "Ё" apart from "Е", whatever the case; a list in another order gives the same rows.
TEST_F(TypeAhead, LandsOnTheFirstMatchingRowForCyrillicPrefixes) {
    const QStringList prefixes = {"Я", "я", "Ё", "ё", "Е", "е", "Ёл", "Ёж", "ел", "Ежо",       "Яш",
                                  "Ж", "Щ", "Э", "Ю", "А", "И", "«",  "z",  "B",  "Ёлочкин 9", "Яковлев 1"};
    for (const QString order : {"name", "id"}) {
        SCOPED_TRACE(order.toStdString());
        open(order);
        for (const QString& prefix : prefixes) {
            SCOPED_TRACE(prefix.toStdString());
            lc->clear();
            const int row = expected(prefix);
            ASSERT_GE(row, 0);
            EXPECT_EQ(lc->findByPrefix(prefix), row);
            EXPECT_EQ(type(prefix), nameAt(row));
            EXPECT_EQ(lc->keyValue().toInt(), ds->valueAt(row, 0).toInt());
        }
        EXPECT_GT(keysSeen, 0);
        // A composed letter comes without a key code and is searched all the same.
        lc->clear();
        newSearch();
        QKeyEvent composed(QEvent::KeyPress, 0, Qt::NoModifier, "ё");
        QApplication::sendEvent(lc->comboBox(), &composed);
        QApplication::setKeyboardInputInterval(400);
        EXPECT_EQ(lc->displayText(), nameAt(expected("Ё")));
        // Nothing starts with these: the choice stays.
        lc->clear();
        type("Ы");
        EXPECT_FALSE(lc->keyValue().isValid());
        EXPECT_EQ(lc->findByPrefix("Ёлкин Я"), -1);
        EXPECT_EQ(lc->findByPrefix("ЯЯ"), -1);
    }
    // On the ordered list one letter typed again steps to the next row that starts with it.
    open("name");
    lc->clear();
    const int first = expected("Я");
    type("Я");
    QApplication::setKeyboardInputInterval(1000000);
    for (int k = 1; k <= 3; ++k) {
        QKeyEvent press(QEvent::KeyPress, 0x42F, Qt::NoModifier, "Я");
        QApplication::sendEvent(lc->comboBox(), &press);
        EXPECT_EQ(lc->displayText(), nameAt(first + k));
    }
    QApplication::setKeyboardInputInterval(400);
    // The open list searches the same way.
    lc->clear();
    lc->dropDown();
    QAbstractItemView* view = lc->comboBox()->view();
    newSearch();
    view->keyboardSearch("Ё");
    QApplication::setKeyboardInputInterval(400);
    EXPECT_EQ(view->currentIndex().row(), expected("Ё"));
    // The open list follows a search into rows far below the ones shown.
    newSearch();
    view->keyboardSearch("Я");
    QApplication::setKeyboardInputInterval(400);
    EXPECT_EQ(view->currentIndex().row(), expected("Я"));
    EXPECT_TRUE(view->viewport()->rect().contains(view->visualRect(view->currentIndex())));
    lc->closeUp(true);
    EXPECT_EQ(lc->displayText(), nameAt(expected("Я")));
    // A row found in the closed combo is shown when the list opens.
    type("Ё");
    lc->dropDown();
    EXPECT_EQ(view->currentIndex().row(), expected("Ё"));
    EXPECT_TRUE(view->viewport()->rect().contains(view->visualRect(view->currentIndex())));
    lc->closeUp(false);
    EXPECT_EQ(lc->displayText(), nameAt(expected("Ё")));
}
