/* The filter panel of the administrator (user 1) as he left it: the classifier filter of kind 0
   (his dairy branch, classifier type 0) and the client filter of kind 1 (his three suppliers) are
   on; the card-permission matrix takes full access and sales-only cards in the December
   inventory places and the seasonal pattern at the Christmas-tree markets. Ivanov (user 2) has a
   matrix of his own. */
INSERT INTO SEL_CLASSIF_FILTER (ID_USER, KIND, CLASSIF_TYPE, ITEMCOUNT)
  SELECT 1, 0, 0, (SELECT SUM(C.ITEMCOUNT) FROM SEL_CLASSIF SC
                     LEFT JOIN CLASSIF C ON SC.CLASSIF = C.ID_CLASSIF
                     WHERE SC.ID_USER = 1 AND SC.KIND = 0 AND SC.CLASSIF_TYPE = 0)
    FROM RDB$DATABASE;
INSERT INTO SEL_CLIENT_FILTER (ID_USER, KIND, ITEMCOUNT)
  SELECT 1, 1, (SELECT COUNT(*) FROM SEL_CLIENT SC
                  WHERE SC.ID_USER = 1 AND SC.KIND = 1 AND SC.CLIENT_TYPE = 0)
    FROM RDB$DATABASE;

INSERT INTO CARDPERMISSION_FILTER (ID_USER, SUPERPLACE, PERMISSION_PATTERN, IS_SET) VALUES (1, 7, 1, 1);
INSERT INTO CARDPERMISSION_FILTER (ID_USER, SUPERPLACE, PERMISSION_PATTERN, IS_SET) VALUES (1, 7, 2, 1);
INSERT INTO CARDPERMISSION_FILTER (ID_USER, SUPERPLACE, PERMISSION_PATTERN, IS_SET) VALUES (1, 8, 6, 1);
INSERT INTO CARDPERMISSION_FILTER (ID_USER, SUPERPLACE, PERMISSION_PATTERN, IS_SET) VALUES (1, 9, 4, 0);
INSERT INTO CARDPERMISSION_FILTER (ID_USER, SUPERPLACE, PERMISSION_PATTERN, IS_SET) VALUES (2, 9, 3, 1);
