/* Payment documents and the currency rate history.

   PAYMENT_DOC: one payment of a shop to a counterparty or from it. The amount is in the
   document's currency (CUR_TYPE) at the rate CURS (roubles per unit) of the document's date;
   QUANTITY is the number of units paid for. PAYMENT_KIND is the code of the payment kind
   ('1' cash, '2' bank transfer, '3' card, '4' offset), DOC_INDEX the index under which the
   document is filed, PRICE_TYPE the letter of the price list the amount was taken from
   ('N' normal, 'L' last receipt, 'M' maximum receipt, 'S' cost), LINK_TO_CLIENT the
   counterparty, DOC_MONTH the first day of the month the payment is booked to. NOTE is plain
   text, DESCRIPTION formatted text (HTML). IS_CHECKED ('T'/'F') says that accounting checked the
   document, IS_PAID (1/0) that the money moved. */

CREATE GENERATOR GEN_PAYMENT_DOC_ID;

CREATE TABLE PAYMENT_DOC (
    ID_PAYMENT_DOC  INTEGER NOT NULL,
    DOC_NUMBER      VARCHAR(20) NOT NULL,
    DOC_DATE        DATE NOT NULL,
    DOC_TIME        TIME,
    CREATED         TIMESTAMP,
    DOC_MONTH       DATE,
    STATUS          VARCHAR(20) COLLATE PXW_CYRL,
    AMOUNT          NUMERIC(15,2),
    QUANTITY        NUMERIC(15,3),
    CUR_TYPE        INTEGER,
    CURS            NUMERIC(15,4),
    EMAIL           VARCHAR(80),
    SITE            VARCHAR(120),
    NOTE            BLOB SUB_TYPE TEXT,
    DESCRIPTION     BLOB SUB_TYPE TEXT,
    ARTICUL         VARCHAR(30),
    PAYMENT_KIND    VARCHAR(4),
    DOC_INDEX       VARCHAR(20),
    PRICE_TYPE      CHAR(1),
    LINK_TO_CLIENT  INTEGER,
    IS_CHECKED      CHAR(1) DEFAULT 'F' NOT NULL,
    IS_PAID         SMALLINT DEFAULT 0 NOT NULL,
    CONSTRAINT PK_PAYMENT_DOC PRIMARY KEY (ID_PAYMENT_DOC),
    CONSTRAINT FK_PAYMENT_DOC_CUR_TYPE FOREIGN KEY (CUR_TYPE) REFERENCES CUR_TYPE (ID_CUR_TYPE),
    CONSTRAINT FK_PAYMENT_DOC_CLIENT FOREIGN KEY (LINK_TO_CLIENT) REFERENCES CLIENTS (ID_CLIENTS),
    CONSTRAINT CHK_PAYMENT_DOC_CHECKED CHECK (IS_CHECKED IN ('T', 'F')),
    CONSTRAINT CHK_PAYMENT_DOC_PAID CHECK (IS_PAID IN (0, 1)),
    CONSTRAINT CHK_PAYMENT_DOC_AMOUNT CHECK (AMOUNT IS NULL OR AMOUNT >= 0),
    CONSTRAINT CHK_PAYMENT_DOC_CURS CHECK (CURS IS NULL OR CURS > 0)
);

CREATE INDEX IDX_PAYMENT_DOC_DATE ON PAYMENT_DOC (DOC_DATE);

SET TERM ^ ;
CREATE TRIGGER PAYMENT_DOC_BI FOR PAYMENT_DOC ACTIVE BEFORE INSERT POSITION 0
AS
BEGIN
  IF (NEW.ID_PAYMENT_DOC IS NULL) THEN
    NEW.ID_PAYMENT_DOC = GEN_ID(GEN_PAYMENT_DOC_ID, 1);
END^
SET TERM ; ^

/* Official rates of the currencies: roubles per unit of the currency on a date. A date without
   a row takes the rate of the last date before it. */
CREATE TABLE CUR_HISTORY (
    ID_CUR_TYPE  INTEGER NOT NULL,
    CURS_DATE    DATE NOT NULL,
    CURS         NUMERIC(15,4) NOT NULL,
    CONSTRAINT PK_CUR_HISTORY PRIMARY KEY (ID_CUR_TYPE, CURS_DATE),
    CONSTRAINT FK_CUR_HISTORY_CUR_TYPE FOREIGN KEY (ID_CUR_TYPE) REFERENCES CUR_TYPE (ID_CUR_TYPE),
    CONSTRAINT CHK_CUR_HISTORY_CURS CHECK (CURS > 0)
);
