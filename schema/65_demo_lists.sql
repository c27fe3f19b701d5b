/* Demo rows of the list frames for the administrator (user 1, shop 1), in the kind -1 that the
   frames start with: two checked permission patterns, four places of the shop in priority order
   (one switched off), and a short personal list of goods cards. */
INSERT INTO SEL_PERMIS (ID_USER, KIND, ID_PERMIS, IS_USED) VALUES (1, -1, 1, 1);
INSERT INTO SEL_PERMIS (ID_USER, KIND, ID_PERMIS, IS_USED) VALUES (1, -1, 3, 1);

INSERT INTO SEL_PLACE (ID_USER, KIND, PLACE_INDEX, PRIORITY, IS_USED) VALUES (1, -1, 50, 1, 1);
INSERT INTO SEL_PLACE (ID_USER, KIND, PLACE_INDEX, PRIORITY, IS_USED) VALUES (1, -1, 52, 2, 1);
INSERT INTO SEL_PLACE (ID_USER, KIND, PLACE_INDEX, PRIORITY, IS_USED) VALUES (1, -1, 55, 3, 0);
INSERT INTO SEL_PLACE (ID_USER, KIND, PLACE_INDEX, PRIORITY, IS_USED) VALUES (1, -1, 51, 4, 1);

INSERT INTO SEL_CARDSCLA (ID_USER, KIND, ARTICUL) VALUES (1, -1, '100-0001');
INSERT INTO SEL_CARDSCLA (ID_USER, KIND, ARTICUL) VALUES (1, -1, '100-0004');

/* A bookkeeper who has left, and the administrator's managers in the filter of kind 0. */
UPDATE USERS SET IS_UVOLEN = 'T' WHERE ID_USER = 9;
INSERT INTO FILTER_MANAGER (ID_USER, KIND, MANAGER) VALUES (1, 0, 2);
INSERT INTO FILTER_MANAGER (ID_USER, KIND, MANAGER) VALUES (1, 0, 7);
