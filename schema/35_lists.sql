/* Per-user lists kept by the list frames: checked permission patterns (SEL_PERMIS), storage
   places in priority order with a "used" switch (SEL_PLACE), and a personal list of goods
   cards (SEL_CARDSCLA over the card articles CARDSCLA). Every list is keyed by the user and a
   kind number that separates independent host forms. */

/* Checked permission patterns. */
CREATE TABLE SEL_PERMIS (
    ID_USER    INTEGER NOT NULL,
    KIND       INTEGER NOT NULL,
    ID_PERMIS  INTEGER NOT NULL,
    IS_USED    SMALLINT DEFAULT 1 NOT NULL,
    CONSTRAINT PK_SEL_PERMIS PRIMARY KEY (ID_USER, KIND, ID_PERMIS),
    CONSTRAINT FK_SEL_PERMIS_USER FOREIGN KEY (ID_USER) REFERENCES USERS (ID_USER) ON DELETE CASCADE,
    CONSTRAINT FK_SEL_PERMIS_PATTERN FOREIGN KEY (ID_PERMIS) REFERENCES PERMISSION_PATTERN (ID)
        ON DELETE CASCADE
);

/* Storage places chosen by a user (the place selection dialogs fill SEL_PLACE): the place list
   frame orders them (PRIORITY, 1 first) and switches them on and off (IS_USED 1/0) within the
   shop (SHOPINDEX) of the place. */
ALTER TABLE SEL_PLACE ADD PRIORITY INTEGER DEFAULT 0 NOT NULL;
ALTER TABLE SEL_PLACE ADD IS_USED SMALLINT DEFAULT 1 NOT NULL;

SET TERM ^ ;
/* A place chosen without one gets the next priority of the user's list in its shop (the branch
   and shop were filled in by SEL_PLACE_BI). */
CREATE OR ALTER TRIGGER SEL_PLACE_ORDER_BI FOR SEL_PLACE ACTIVE BEFORE INSERT POSITION 10
AS
BEGIN
  IF (NEW.PRIORITY IS NULL OR NEW.PRIORITY = 0) THEN
    SELECT COALESCE(MAX(S.PRIORITY), 0) + 1 FROM SEL_PLACE S
      WHERE S.ID_USER = NEW.ID_USER AND S.KIND = NEW.KIND AND S.SHOPINDEX IS NOT DISTINCT FROM NEW.SHOPINDEX
      INTO NEW.PRIORITY;
  IF (NEW.IS_USED IS NULL) THEN
    NEW.IS_USED = 1;
END^
SET TERM ; ^

/* The place list of a shop in priority order. */
CREATE INDEX IDX_SEL_PLACE_ORDER ON SEL_PLACE (ID_USER, KIND, SHOPINDEX, PRIORITY);

/* Goods cards by article: one row per article, named after its first card. */
CREATE VIEW CARDSCLA (ARTICUL, NAME)
AS
SELECT C.ARTICUL, MIN(C.NAME)
FROM CARD C
WHERE C.ARTICUL IS NOT NULL
GROUP BY C.ARTICUL;

/* A user's own list of goods cards by article. */
CREATE TABLE SEL_CARDSCLA (
    ID_USER  INTEGER NOT NULL,
    KIND     INTEGER NOT NULL,
    ARTICUL  VARCHAR(30) NOT NULL,
    CONSTRAINT PK_SEL_CARDSCLA PRIMARY KEY (ID_USER, KIND, ARTICUL),
    CONSTRAINT FK_SEL_CARDSCLA_USER FOREIGN KEY (ID_USER) REFERENCES USERS (ID_USER) ON DELETE CASCADE
);

/* Users who have left the firm ('T'): offered in the manager chooser only on request. */
ALTER TABLE USERS ADD IS_UVOLEN CHAR(1) DEFAULT 'F' NOT NULL;

/* Managers chosen by a user for a report filter; MANAGER -1 is "<Не определено>". */
CREATE TABLE FILTER_MANAGER (
    ID_USER  INTEGER NOT NULL,
    KIND     INTEGER NOT NULL,
    MANAGER  INTEGER NOT NULL,
    CONSTRAINT PK_FILTER_MANAGER PRIMARY KEY (ID_USER, KIND, MANAGER),
    CONSTRAINT FK_FILTER_MANAGER_USER FOREIGN KEY (ID_USER) REFERENCES USERS (ID_USER) ON DELETE CASCADE,
    CONSTRAINT FK_FILTER_MANAGER_MANAGER FOREIGN KEY (MANAGER) REFERENCES USERS (ID_USER) ON DELETE CASCADE
);
