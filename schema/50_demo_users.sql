/* Demo users. -1 and -10 are system rows; a session without a user name attaches as SYSDBA, who is the
   administrator here. FILIALINDEX and SHOPINDEX are the user's branch and shop in the shop tree
   (TH_CLASSIF, rows in 52_demo_clients.sql). */

INSERT INTO USERS (ID_USER, NAME_USER, LOGIN, POST, FILIALINDEX, SHOPINDEX) VALUES (-1, '<Не задан>', NULL, NULL, 101, 1);
INSERT INTO USERS (ID_USER, NAME_USER, LOGIN, POST, FILIALINDEX, SHOPINDEX) VALUES (-10, '<Система>', NULL, NULL, 101, 1);
INSERT INTO USERS (ID_USER, NAME_USER, LOGIN, POST, EMAIL, FILIALINDEX, SHOPINDEX) VALUES (1, 'Администратор системы', 'SYSDBA', 'Администратор', 'admin@torg.example', 101, 1);
INSERT INTO USERS (ID_USER, NAME_USER, LOGIN, POST, EMAIL, FILIALINDEX, SHOPINDEX) VALUES (2, 'Иванов Иван Петрович', 'IVANOV', 'Директор магазина', 'ivanov@torg.example', 101, 1);
INSERT INTO USERS (ID_USER, NAME_USER, LOGIN, POST, EMAIL, FILIALINDEX, SHOPINDEX) VALUES (3, 'Ёлкина Анна Сергеевна', 'ELKINA', 'Товаровед', 'elkina@torg.example', 201, 2);
INSERT INTO USERS (ID_USER, NAME_USER, LOGIN, POST, EMAIL, FILIALINDEX, SHOPINDEX) VALUES (4, 'Петрова Мария Викторовна', 'PETROVA', 'Менеджер по закупкам', 'petrova@torg.example', 101, 1);
INSERT INTO USERS (ID_USER, NAME_USER, LOGIN, POST, EMAIL, FILIALINDEX, SHOPINDEX) VALUES (5, 'Сидоров Алексей Николаевич', 'SIDOROV', 'Кладовщик', NULL, 104, 1);
INSERT INTO USERS (ID_USER, NAME_USER, LOGIN, POST, EMAIL, FILIALINDEX, SHOPINDEX) VALUES (6, 'Ежов Дмитрий Олегович', 'EZHOV', 'Старший кассир', NULL, 301, 3);
INSERT INTO USERS (ID_USER, NAME_USER, LOGIN, POST, EMAIL, FILIALINDEX, SHOPINDEX) VALUES (7, 'Яковлева Ольга Игоревна', 'YAKOVLEVA', 'Менеджер CRM', 'yakovleva@torg.example', 101, 1);
INSERT INTO USERS (ID_USER, NAME_USER, LOGIN, POST, EMAIL, FILIALINDEX, SHOPINDEX) VALUES (8, 'абрамов Сергей (стажёр)', 'ABRAMOV', 'Продавец-консультант', NULL, 202, 2);
INSERT INTO USERS (ID_USER, NAME_USER, LOGIN, POST, EMAIL, FILIALINDEX, SHOPINDEX, IS_ACTIVE) VALUES (9, 'Кузнецова Елена Андреевна', 'KUZNETSOVA', 'Бухгалтер', NULL, 101, 1, 0);
ALTER SEQUENCE GEN_USERS_ID RESTART WITH 9;
/* Users who work in other classifiers than the goods one: purchases in the assortment matrix,
   CRM in the companies. */
UPDATE USERS SET SET_FOR = 0, CLASSIF_TYPE = 1001 WHERE ID_USER = 4;
UPDATE USERS SET SET_FOR = 4, CLASSIF_TYPE = 27 WHERE ID_USER = 7;

INSERT INTO USER_RIGHTS (ID_USER, FUNC_NAME) VALUES (1, 'CRM.LOGIN');
INSERT INTO USER_RIGHTS (ID_USER, FUNC_NAME) VALUES (1, 'S_Main.SHOW_MX_COUNT');
INSERT INTO USER_RIGHTS (ID_USER, FUNC_NAME) VALUES (7, 'CRM.LOGIN');
INSERT INTO USER_RIGHTS (ID_USER, FUNC_NAME) VALUES (2, 'S_Main.SHOW_MX_COUNT');
