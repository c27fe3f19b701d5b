/* Demo rows of the CRM and staff references. Some names start with a lower-case letter or with
   Ё/ё on purpose: their order under PXW_CYRL differs from the byte order. After the rows, each
   generator is moved past the keys used here. */

INSERT INTO CRM_PRODUCT (ID, NAME, IS_STRATEGIC, COMMENT) VALUES (-1, '<Не задан>', 0, NULL);
INSERT INTO CRM_PRODUCT (ID, NAME, IS_STRATEGIC, COMMENT) VALUES (0, '<Прочие товары>', 0, NULL);
INSERT INTO CRM_PRODUCT (ID, NAME, IS_STRATEGIC, COMMENT) VALUES (1, 'Молочная продукция', 1, 'Ежедневные поставки');
INSERT INTO CRM_PRODUCT (ID, NAME, IS_STRATEGIC, COMMENT) VALUES (2, 'Хлеб и выпечка', 0, NULL);
INSERT INTO CRM_PRODUCT (ID, NAME, IS_STRATEGIC, COMMENT) VALUES (3, 'Бакалея', 0, NULL);
INSERT INTO CRM_PRODUCT (ID, NAME, IS_STRATEGIC, COMMENT) VALUES (4, 'Алкогольная продукция', 1, 'Нужна лицензия покупателя');
INSERT INTO CRM_PRODUCT (ID, NAME, IS_STRATEGIC, COMMENT) VALUES (5, 'Бытовая химия', 0, NULL);
INSERT INTO CRM_PRODUCT (ID, NAME, IS_STRATEGIC, COMMENT) VALUES (6, 'Ёлочные украшения', 0, 'Сезон: ноябрь — декабрь');
INSERT INTO CRM_PRODUCT (ID, NAME, IS_STRATEGIC, COMMENT) VALUES (7, 'Ювелирные изделия', 1, NULL);
INSERT INTO CRM_PRODUCT (ID, NAME, IS_STRATEGIC, COMMENT) VALUES (8, 'Услуги доставки', 0, NULL);
INSERT INTO CRM_PRODUCT (ID, NAME, IS_STRATEGIC, COMMENT) VALUES (9, 'кофе и чай', 0, NULL);
INSERT INTO CRM_PRODUCT (ID, NAME, IS_STRATEGIC, COMMENT) VALUES (10, 'Подарочные сертификаты', 0, NULL);
ALTER SEQUENCE GEN_CRM_PRODUCT_ID RESTART WITH 10;
/* Branches of the CRM product classifier. */
UPDATE CRM_PRODUCT SET CLASSIF = 271 WHERE ID IN (1, 2, 3, 4, 5, 6, 7, 9, 10);
UPDATE CRM_PRODUCT SET CLASSIF = 272 WHERE ID = 8;

INSERT INTO CRM_PROJECT (ID, NAME, DATE_BEGIN, DATE_END, COMMENT) VALUES (1, 'Открытие магазина на Ленинском проспекте', '2024-02-01', '2024-06-30', NULL);
INSERT INTO CRM_PROJECT (ID, NAME, DATE_BEGIN, DATE_END, COMMENT) VALUES (2, 'Программа лояльности 2024', '2024-01-01', '2024-12-31', NULL);
INSERT INTO CRM_PROJECT (ID, NAME, DATE_BEGIN, DATE_END, COMMENT) VALUES (3, 'Поставки в сеть кафе', '2024-03-15', NULL, 'Выпечка и молочная продукция');
INSERT INTO CRM_PROJECT (ID, NAME, DATE_BEGIN, DATE_END, COMMENT) VALUES (4, 'Корпоративные подарки к Новому году', '2024-10-01', '2024-12-25', NULL);
INSERT INTO CRM_PROJECT (ID, NAME, DATE_BEGIN, DATE_END, COMMENT) VALUES (5, 'Выход на маркетплейсы', '2024-04-01', NULL, NULL);
INSERT INTO CRM_PROJECT (ID, NAME, DATE_BEGIN, DATE_END, COMMENT) VALUES (6, 'ёлочный базар 2024', '2024-12-01', '2024-12-31', NULL);
ALTER SEQUENCE GEN_CRM_PROJECT_ID RESTART WITH 6;

/* Entered from the lowest level up: the list shows them in this order. */
INSERT INTO EVENT_PRIORITY (ID, NAME) VALUES (-1, '<Не задан>');
INSERT INTO EVENT_PRIORITY (ID, NAME) VALUES (0, 'Низкий');
INSERT INTO EVENT_PRIORITY (ID, NAME) VALUES (1, 'Обычный');
INSERT INTO EVENT_PRIORITY (ID, NAME) VALUES (2, 'Высокий');
INSERT INTO EVENT_PRIORITY (ID, NAME) VALUES (3, 'Срочный');
INSERT INTO EVENT_PRIORITY (ID, NAME) VALUES (4, 'Критический');

INSERT INTO EVENT_TYPE (ID, NAME) VALUES (-1, '<Не задан>');
INSERT INTO EVENT_TYPE (ID, NAME) VALUES (1, 'Телефонный звонок');
INSERT INTO EVENT_TYPE (ID, NAME) VALUES (2, 'Встреча');
INSERT INTO EVENT_TYPE (ID, NAME) VALUES (3, 'Письмо');
INSERT INTO EVENT_TYPE (ID, NAME) VALUES (4, 'Презентация');
INSERT INTO EVENT_TYPE (ID, NAME) VALUES (5, 'Отправка коммерческого предложения');
INSERT INTO EVENT_TYPE (ID, NAME) VALUES (6, 'Переговоры');
INSERT INTO EVENT_TYPE (ID, NAME) VALUES (7, 'Выставка');
INSERT INTO EVENT_TYPE (ID, NAME) VALUES (8, 'ежеквартальная сверка');
ALTER SEQUENCE GEN_EVENT_TYPE_ID RESTART WITH 8;

/* From the most important down: the list shows them in this order. */
INSERT INTO FIRM_PRIORITY (ID, NAME) VALUES (-1, '<Не задан>');
INSERT INTO FIRM_PRIORITY (ID, NAME) VALUES (1, 'Ключевой клиент');
INSERT INTO FIRM_PRIORITY (ID, NAME) VALUES (2, 'Высокий');
INSERT INTO FIRM_PRIORITY (ID, NAME) VALUES (3, 'Средний');
INSERT INTO FIRM_PRIORITY (ID, NAME) VALUES (4, 'Низкий');

/* Along the sales funnel: the list shows them in this order. */
INSERT INTO FIRM_STATE (ID, NAME) VALUES (-1, '<Не задано>');
INSERT INTO FIRM_STATE (ID, NAME) VALUES (1, 'Потенциальный клиент');
INSERT INTO FIRM_STATE (ID, NAME) VALUES (2, 'Первичный контакт');
INSERT INTO FIRM_STATE (ID, NAME) VALUES (3, 'Переговоры');
INSERT INTO FIRM_STATE (ID, NAME) VALUES (4, 'Заключён договор');
INSERT INTO FIRM_STATE (ID, NAME) VALUES (5, 'Постоянный клиент');
INSERT INTO FIRM_STATE (ID, NAME) VALUES (6, 'Сотрудничество приостановлено');
INSERT INTO FIRM_STATE (ID, NAME) VALUES (7, 'Отказ');
ALTER SEQUENCE GEN_FIRM_STATE_ID RESTART WITH 7;

INSERT INTO TASK_TYPE (ID, NAME) VALUES (-1, '<Не задан>');
INSERT INTO TASK_TYPE (ID, NAME) VALUES (1, 'Разовая задача');
INSERT INTO TASK_TYPE (ID, NAME) VALUES (2, 'Периодическая задача');
INSERT INTO TASK_TYPE (ID, NAME) VALUES (3, 'Поручение руководителя');
INSERT INTO TASK_TYPE (ID, NAME) VALUES (4, 'Задача по проекту');
INSERT INTO TASK_TYPE (ID, NAME) VALUES (5, 'Контроль исполнения');
INSERT INTO TASK_TYPE (ID, NAME) VALUES (6, 'ежедневный отчёт');
ALTER SEQUENCE GEN_TASK_TYPE_ID RESTART WITH 6;

INSERT INTO HRM_DEPARTMENT (ID, NAME) VALUES (-1, '<Не задан>');
INSERT INTO HRM_DEPARTMENT (ID, NAME) VALUES (1, 'Администрация');
INSERT INTO HRM_DEPARTMENT (ID, NAME) VALUES (2, 'Бухгалтерия');
INSERT INTO HRM_DEPARTMENT (ID, NAME) VALUES (3, 'Отдел закупок');
INSERT INTO HRM_DEPARTMENT (ID, NAME) VALUES (4, 'Отдел продаж');
INSERT INTO HRM_DEPARTMENT (ID, NAME) VALUES (5, 'Склад');
INSERT INTO HRM_DEPARTMENT (ID, NAME) VALUES (6, 'Служба доставки');
INSERT INTO HRM_DEPARTMENT (ID, NAME) VALUES (7, 'Торговый зал');
INSERT INTO HRM_DEPARTMENT (ID, NAME) VALUES (8, 'ИТ-отдел');
INSERT INTO HRM_DEPARTMENT (ID, NAME) VALUES (9, 'Отдел кадров');
INSERT INTO HRM_DEPARTMENT (ID, NAME) VALUES (10, 'Эксплуатация здания');
ALTER SEQUENCE GEN_HRM_DEPARTMENT_ID RESTART WITH 10;

INSERT INTO HRM_JOB (ID, NAME) VALUES (-1, '<Не задана>');
INSERT INTO HRM_JOB (ID, NAME) VALUES (1, 'Директор магазина');
INSERT INTO HRM_JOB (ID, NAME) VALUES (2, 'Заместитель директора');
INSERT INTO HRM_JOB (ID, NAME) VALUES (3, 'Главный бухгалтер');
INSERT INTO HRM_JOB (ID, NAME) VALUES (4, 'Товаровед');
INSERT INTO HRM_JOB (ID, NAME) VALUES (5, 'Старший кассир');
INSERT INTO HRM_JOB (ID, NAME) VALUES (6, 'Кассир');
INSERT INTO HRM_JOB (ID, NAME) VALUES (7, 'Продавец-консультант');
INSERT INTO HRM_JOB (ID, NAME) VALUES (8, 'Кладовщик');
INSERT INTO HRM_JOB (ID, NAME) VALUES (9, 'Водитель-экспедитор');
INSERT INTO HRM_JOB (ID, NAME) VALUES (10, 'Менеджер по закупкам');
INSERT INTO HRM_JOB (ID, NAME) VALUES (11, 'Грузчик');
INSERT INTO HRM_JOB (ID, NAME) VALUES (12, 'уборщик служебных помещений');
ALTER SEQUENCE GEN_HRM_JOB_ID RESTART WITH 12;

/* Monday to Sunday: the list shows them in this order. */
INSERT INTO DAY_OF_WEEK (ID, NAME, SHORT_NAME) VALUES (-1, '<Не задан>', NULL);
INSERT INTO DAY_OF_WEEK (ID, NAME, SHORT_NAME) VALUES (1, 'Понедельник', 'Пн');
INSERT INTO DAY_OF_WEEK (ID, NAME, SHORT_NAME) VALUES (2, 'Вторник', 'Вт');
INSERT INTO DAY_OF_WEEK (ID, NAME, SHORT_NAME) VALUES (3, 'Среда', 'Ср');
INSERT INTO DAY_OF_WEEK (ID, NAME, SHORT_NAME) VALUES (4, 'Четверг', 'Чт');
INSERT INTO DAY_OF_WEEK (ID, NAME, SHORT_NAME) VALUES (5, 'Пятница', 'Пт');
INSERT INTO DAY_OF_WEEK (ID, NAME, SHORT_NAME) VALUES (6, 'Суббота', 'Сб');
INSERT INTO DAY_OF_WEEK (ID, NAME, SHORT_NAME) VALUES (7, 'Воскресенье', 'Вс');
