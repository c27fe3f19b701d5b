/* Demo rows of the goods card references. Some names start with a lower-case letter or with
   Ё/ё on purpose: their order under PXW_CYRL differs from the byte order. */

INSERT INTO ALGORITM (ID, NAME) VALUES (-1, '<Не задан>');
INSERT INTO ALGORITM (ID, NAME) VALUES (1, 'Наценка от закупочной цены');
INSERT INTO ALGORITM (ID, NAME) VALUES (2, 'По прайс-листу поставщика');
INSERT INTO ALGORITM (ID, NAME) VALUES (3, 'Фиксированная розничная цена');
INSERT INTO ALGORITM (ID, NAME) VALUES (4, 'Ёмкостный пересчёт (за литр)');
INSERT INTO ALGORITM (ID, NAME) VALUES (5, 'округление до 10 копеек');
INSERT INTO ALGORITM (ID, NAME) VALUES (6, 'ящичный расчёт по кратности');
INSERT INTO ALGORITM (ID, NAME) VALUES (7, 'Средневзвешенная себестоимость');
INSERT INTO ALGORITM (ID, NAME) VALUES (8, 'Евро-прайс с пересчётом по курсу');

INSERT INTO CARDKIND (ID, NAME, COMMENT) VALUES (-1, '<Не задан>', NULL);
INSERT INTO CARDKIND (ID, NAME, COMMENT) VALUES (1, 'Товар', 'Штучный товар для продажи');
INSERT INTO CARDKIND (ID, NAME, COMMENT) VALUES (2, 'Услуга', 'Доставка, сборка, установка');
INSERT INTO CARDKIND (ID, NAME, COMMENT) VALUES (3, 'Комплект', 'Набор из нескольких карточек');
INSERT INTO CARDKIND (ID, NAME, COMMENT) VALUES (4, 'весовой товар', 'Продаётся на вес');
INSERT INTO CARDKIND (ID, NAME, COMMENT) VALUES (5, 'ящичная упаковка', 'Товар в ящиках, кратность упаковки');
INSERT INTO CARDKIND (ID, NAME, COMMENT) VALUES (6, 'Ёмкость возвратная', 'Многооборотная тара с залогом');
INSERT INTO CARDKIND (ID, NAME, COMMENT) VALUES (7, 'Подарочный сертификат', NULL);
INSERT INTO CARDKIND (ID, NAME, COMMENT) VALUES (8, 'Еда на вынос', 'Продукция собственного производства');

INSERT INTO CARDTYPES (ID_CARDTYPE, NAME_CARDTYPE) VALUES (-1, '<Не задан>');
INSERT INTO CARDTYPES (ID_CARDTYPE, NAME_CARDTYPE) VALUES (1, 'Продовольственные товары');
INSERT INTO CARDTYPES (ID_CARDTYPE, NAME_CARDTYPE) VALUES (2, 'Непродовольственные товары');
INSERT INTO CARDTYPES (ID_CARDTYPE, NAME_CARDTYPE) VALUES (3, 'Алкогольная продукция');
INSERT INTO CARDTYPES (ID_CARDTYPE, NAME_CARDTYPE) VALUES (4, 'Бытовая химия');
INSERT INTO CARDTYPES (ID_CARDTYPE, NAME_CARDTYPE) VALUES (5, 'ёлочные украшения');
INSERT INTO CARDTYPES (ID_CARDTYPE, NAME_CARDTYPE) VALUES (6, 'Ювелирные изделия');
INSERT INTO CARDTYPES (ID_CARDTYPE, NAME_CARDTYPE) VALUES (7, 'яйца и яичные продукты');
INSERT INTO CARDTYPES (ID_CARDTYPE, NAME_CARDTYPE) VALUES (8, 'Табачные изделия');
INSERT INTO CARDTYPES (ID_CARDTYPE, NAME_CARDTYPE) VALUES (9, 'Ежедневная пресса');

INSERT INTO CUR_TYPE (ID_CUR_TYPE, NAME_CUR_TYPE, SHORT_NAME, ISO_CODE, DIGITAL_CODE, IS_NATIONAL) VALUES (-1, '<Не задана>', NULL, NULL, NULL, 0);
INSERT INTO CUR_TYPE (ID_CUR_TYPE, NAME_CUR_TYPE, SHORT_NAME, ISO_CODE, DIGITAL_CODE, IS_NATIONAL) VALUES (1, 'Российский рубль', 'руб.', 'RUB', 643, 1);
INSERT INTO CUR_TYPE (ID_CUR_TYPE, NAME_CUR_TYPE, SHORT_NAME, ISO_CODE, DIGITAL_CODE, IS_NATIONAL) VALUES (2, 'Доллар США', '$', 'USD', 840, 0);
INSERT INTO CUR_TYPE (ID_CUR_TYPE, NAME_CUR_TYPE, SHORT_NAME, ISO_CODE, DIGITAL_CODE, IS_NATIONAL) VALUES (3, 'Евро', 'EUR', 'EUR', 978, 0);
INSERT INTO CUR_TYPE (ID_CUR_TYPE, NAME_CUR_TYPE, SHORT_NAME, ISO_CODE, DIGITAL_CODE, IS_NATIONAL) VALUES (4, 'Белорусский рубль', 'бел.руб.', 'BYN', 933, 0);
INSERT INTO CUR_TYPE (ID_CUR_TYPE, NAME_CUR_TYPE, SHORT_NAME, ISO_CODE, DIGITAL_CODE, IS_NATIONAL) VALUES (5, 'Казахстанский тенге', 'тнг.', 'KZT', 398, 0);
INSERT INTO CUR_TYPE (ID_CUR_TYPE, NAME_CUR_TYPE, SHORT_NAME, ISO_CODE, DIGITAL_CODE, IS_NATIONAL) VALUES (6, 'Китайский юань', 'юань', 'CNY', 156, 0);
INSERT INTO CUR_TYPE (ID_CUR_TYPE, NAME_CUR_TYPE, SHORT_NAME, ISO_CODE, DIGITAL_CODE, IS_NATIONAL) VALUES (7, 'у.е. (условная единица)', 'у.е.', NULL, NULL, 0);
