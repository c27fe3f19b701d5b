#include "bench/LargeData.h"
#include "platform/db/Database.h"
#include "schema/DemoDatabase.h"
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QStringList>
#include <cstdio>

namespace frames::bench {

namespace {

// Bumped whenever the generated data changes, so that an older large database is rebuilt.
constexpr const char* kGeneratorVersion = "large-2";

QString dataDir() {
    const QString dir = QStringLiteral(FRAMES_BENCH_DATA);
    QDir().mkpath(dir);
    return dir;
}

// "decode(mod(<expr>, n), 0, 'a', 1, 'b', ...)": picks one of the words by a number.
QString pick(const QString& expr, const QStringList& words) {
    QString s = QStringLiteral("decode(mod(%1, %2)").arg(expr).arg(words.size());
    for (int i = 0; i < words.size(); ++i) s += QStringLiteral(", %1, '%2'").arg(i).arg(words[i]);
    return s + QStringLiteral(")");
}

const QStringList& surnames() {
    static const QStringList s = {
        "Иванов",   "Петров",    "Сидоров",  "Смирнов",  "Кузнецов",  "Попов",    "Васильев", "Соколов",
        "Михайлов", "Новиков",   "Фёдоров",  "Морозов",  "Волков",    "Алексеев", "Лебедев",  "Семёнов",
        "Егоров",   "Павлов",    "Козлов",   "Степанов", "Николаев",  "Орлов",    "Андреев",  "Макаров",
        "Никитин",  "Захаров",   "Зайцев",   "Соловьёв", "Борисов",   "Яковлев",  "Григорьев", "Романов",
        "Воробьёв", "Сергеев",   "Ёлкин",    "Ёжиков",   "Тарасов",   "Белов",    "Комаров",  "Ющенко",
        "Эйсмонт",  "Щукин",     "Шестаков", "Чернов",   "Цветков",   "Хохлов",   "Уваров",   "Абрамов"};
    return s;
}

QString buildScript() {
    const QStringList initials = {"А", "Б", "В", "Г", "Д", "Е", "Ж", "З", "И", "К", "Л", "М", "Н", "О", "П",
                                  "Р", "С", "Т", "Ф", "Э", "Ю", "Я", "Ё"};
    const QStringList adjectives = {
        "Северный",  "Южный",    "Восточный", "Западный", "Центральный", "Уральский",  "Сибирский",
        "Волжский",  "Невский",  "Донской",   "Балтийский", "Русский",   "Народный",   "Столичный",
        "Городской", "Торговый", "Продуктовый", "Оптовый", "Молочный",  "Хлебный",    "Мясной",
        "Овощной",   "Фермерский", "Семейный", "Домашний", "Новый",     "Старый",     "Ёмкий",
        "Яркий",     "Янтарный", "Золотой",   "Зелёный",  "Белый",      "Красный",    "Дальний",
        "Ближний",   "Быстрый",  "Надёжный",  "Верный",   "Честный"};
    const QStringList nouns = {"Дом", "Двор", "Рынок", "Альянс", "Союз", "Ряд", "Склад", "Терминал",
                               "Край", "Берег", "Мост", "Путь", "Сад", "Лес", "Луг", "Бор", "Ключ",
                               "Источник", "Стандарт", "Капитал", "Партнёр", "Регион", "Продукт",
                               "Вкус", "Урожай", "Колос", "Ёж", "Якорь", "Маяк", "Парус"};
    const QStringList forms = {"ООО", "АО", "ЗАО", "ПАО", "ТД"};
    const QStringList goods = {
        "Молоко пастеризованное", "Кефир", "Ряженка", "Творог", "Сметана", "Йогурт питьевой",
        "Сыр полутвёрдый", "Масло сливочное", "Хлеб Бородинский", "Батон нарезной", "Печенье овсяное",
        "Пряники", "Сахар-песок", "Соль поваренная", "Мука пшеничная", "Крупа гречневая", "Рис круглозёрный",
        "Макароны", "Чай чёрный", "Кофе молотый", "Сок яблочный", "Вода минеральная", "Ёршики для посуды",
        "Яблоки", "Груши", "Апельсины", "Картофель", "Морковь", "Лук репчатый", "Капуста белокочанная",
        "Колбаса варёная", "Сосиски молочные", "Курица охлаждённая", "Филе минтая", "Шампунь",
        "Мыло туалетное", "Зубная паста", "Стиральный порошок", "Эскимо", "Ёлочная игрушка"};
    const QStringList brands = {"Домик", "Простоквашино", "Весёлый молочник", "Красная цена", "Ясный луг",
                                "Агуша", "Щедрое лето", "Эконом", "Любимый", "Юбилейное", "Ёлочка",
                                "Зелёная долина", "Северная", "Волжанка", "Семейная"};
    const QStringList sizes = {"1 л", "0,5 л", "930 г", "400 г", "1 кг", "250 г", "200 г", "2 л", "шт.",
                               "0,9 кг", "100 г", "5 кг"};

    QString s;
    // The client classifier: 40 groups under one root, each with 49 subgroups (2,000 nodes).
    s += QStringLiteral(
             "insert into CLASSIF (ID_CLASSIF, PARENT_CLASSIF, NAME_CLASSIF, ID_CLASSIF_TYPE) values (%1, -1,"
             " 'Контрагенты (большой набор)', 1);\n")
             .arg(kFirstClassifId);
    s += QStringLiteral("set term ^ ;\n"
                        "execute block as declare i integer = 1; declare p integer; begin\n"
                        "  while (i < %1) do begin\n"
                        "    p = iif(i <= 40, %2, %2 + 1 + mod(i, 40));\n"
                        "    insert into CLASSIF (ID_CLASSIF, PARENT_CLASSIF, NAME_CLASSIF, ID_CLASSIF_TYPE)\n"
                        "      values (%2 + :i, :p, iif(:i <= 40, 'Группа ' || %3, 'Подгруппа ' || %4 || ' ' ||"
                        " :i), 1);\n"
                        "    i = i + 1;\n"
                        "  end\n"
                        "end^\n")
             .arg(kLargeClassifNodes)
             .arg(kFirstClassifId)
             .arg(pick(":i", adjectives))
             .arg(pick(":i / 40", nouns));
    // Clients: legal entities, sole traders and persons with Russian names (each kind every third
    // row, so names are picked by :i / 3 where every word of a list must occur).
    const QString company = pick(":i", forms) + QStringLiteral(" || ' «' || ") + pick(":i / 5", adjectives) +
                            QStringLiteral(" || ' ' || ") + pick(":i / 200", nouns) + QStringLiteral(" || '»'");
    const QString trader = QStringLiteral("'ИП ' || ") + pick(":i / 3", surnames()) + QStringLiteral(" || ' ' || ") +
                           pick(":i / 7", initials) + QStringLiteral(" || '. ' || ") + pick(":i / 161", initials) +
                           QStringLiteral(" || '.'");
    const QString person = pick(":i / 3 + 5", surnames()) + QStringLiteral(" || ' ' || ") + pick(":i / 48", initials) +
                           QStringLiteral(" || '. ' || ") + pick(":i / 1104", initials) + QStringLiteral(" || '.'");
    s += QStringLiteral(
             "execute block as declare i integer = 0; declare n varchar(150); begin\n"
             "  while (i < %1) do begin\n"
             "    n = decode(mod(:i, 3), 0, %2, 1, %3, %4);\n"
             "    if (mod(:i, 3) = 0 and :i >= 6000) then n = n || ' ' || (:i / 6000);\n"
             "    insert into CLIENTS (ID_CLIENTS, NAME_CLIENTS, FULLNAME_CLIENTS, CLIENT_TYPE, STATUS, STATE,"
             " CLASSIF, IS_JURIDICAL, INN_CLIENTS, TEL_CLIENTS, ADDRES_CLIENTS)\n"
             "      values (%5 + :i, :n, :n, 0, mod(:i, 3), 0, %6 + 41 + mod(:i, %7), iif(mod(:i, 3) = 0, 'T', 'F'),"
             " lpad(7700000000 + :i, 10, '0'), '+7 495 ' || lpad(mod(:i, 1000), 3, '0') || '-00-00',"
             " 'Москва, ул. ' || %8 || ', д. ' || (1 + mod(:i, 120)));\n"
             "    i = i + 1;\n"
             "  end\n"
             "end^\n")
             .arg(kLargeClients)
             .arg(company, trader, person)
             .arg(kFirstClientId)
             .arg(kFirstClassifId)
             .arg(kLargeClassifNodes - 41)
             .arg(pick(":i / 3", surnames()));
    // Goods cards.
    s += QStringLiteral(
             "execute block as declare i integer = 0; begin\n"
             "  while (i < %1) do begin\n"
             "    insert into CARD (ARTICUL, NAME, CARDKIND, ID_CARDTYPE, ALGORITM, CUR_TYPE, ID_USER, PRICE,"
             " CREATED)\n"
             "      values ('B-' || lpad(:i, 6, '0'), %2 || ' «' || %3 || '» ' || %4 || iif(:i >= 18000, ' арт. ' ||"
             " (:i / 18000), ''), 1, 1, 1, 1, 2, 10 + mod(:i * 37, 5000) / 10.0,"
             " dateadd(mod(:i, 1500) day to date '2020-01-01'));\n"
             "    i = i + 1;\n"
             "  end\n"
             "end^\n"
             "set term ; ^\n")
             .arg(kLargeCards)
             .arg(pick(":i", goods))
             .arg(pick(":i / 40", brands))
             .arg(pick(":i / 600", sizes));
    return s;
}

QString readText(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? QString::fromLatin1(f.readAll()) : QString();
}

void writeText(const QString& path, const QString& text) {
    QFile f(path);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate)) f.write(text.toLatin1());
}

} // namespace

QString demoDatabase() {
    const QString path = dataDir() + QStringLiteral("/demo.fdb");
    schema::ensureDemoDatabase(path);
    return path;
}

QString largeDatabase() {
    const QString path = dataDir() + QStringLiteral("/large.fdb");
    const QString stamp = schema::schemaFingerprint() + QLatin1String(kGeneratorVersion);
    if (QFile::exists(path) && readText(path + QStringLiteral(".stamp")) == stamp) return path;

    std::fprintf(stderr, "Building the large benchmark database %s ...\n", qPrintable(path));
    const QString temp = path + QStringLiteral(".building");
    QFile::remove(temp);
    QFile::remove(temp + QStringLiteral(".schema"));
    schema::createDemoDatabase(temp);
    QFile::remove(temp + QStringLiteral(".schema"));
    {
        db::Database database;
        db::Database::Options bulk;
        bulk.forcedWrites = 0; // the file is thrown away when the build fails
        database.open(temp, bulk);
        database.executeScript(buildScript());
        database.close();
    }
    QFile::remove(path);
    if (!QFile::rename(temp, path))
        throw db::Error::configuration(QStringLiteral("Cannot rename %1 to %2").arg(temp, path));
    writeText(path + QStringLiteral(".stamp"), stamp);
    return path;
}

} // namespace frames::bench
