/* Demo choice in the classifier tree dialogs for the administrator (user 1, kind 0): the dairy
   branch of the goods classifier with everything below it, so that the tree shows a branch all
   chosen under partly chosen parents; and one branch for the first restaurant. */
INSERT INTO SEL_CLASSIF (ID_USER, KIND, CLASSIF, CLASSIF_TYPE)
  SELECT 1, 0, C.ID_CLASSIF, 0 FROM CLASSIF_ALL_PRG(3) C;
INSERT INTO HRC_SEL_CLASSIF (ID_USER, KIND, HRC_FILIAL, CLASSIF, CLASSIF_TYPE)
  SELECT 1, 0, 1, C.ID_CLASSIF, 0 FROM CLASSIF_ALL_PRG(2) C;
