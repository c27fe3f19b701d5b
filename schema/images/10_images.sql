/* The image database: scanned and loaded pictures kept apart from the trade data, in a database
   of their own beside the main one (<name>_images.fdb).

   IMAGE_KINDS: the kinds of pictures a user files under an object (the list on the left of the
   image pages frame).
   PAYMENT_DOC_IMAGES: the pages of the payment documents (PAYMENT_DOC.ID_PAYMENT_DOC of the main
   database), numbered from 1 within a document and kind. A deleted page leaves its number
   unused: the pages after it keep theirs. IMAGE holds the picture in its own file format,
   IMAGE_FORMAT says which: 0 bitmap, 1 JPEG, 2 icon, 3 enhanced metafile, 4 metafile, -1 not
   known (read as a bitmap). */

CREATE TABLE IMAGE_KINDS (
    ID    INTEGER NOT NULL,
    NAME  VARCHAR(40) NOT NULL,
    CONSTRAINT PK_IMAGE_KINDS PRIMARY KEY (ID)
);

CREATE TABLE PAYMENT_DOC_IMAGES (
    ID_PAYMENT_DOC  INTEGER NOT NULL,
    IMAGE_KIND      INTEGER NOT NULL,
    PAGE_NUMBER     INTEGER NOT NULL,
    IMAGE           BLOB SUB_TYPE 0 SEGMENT SIZE 8192,
    IMAGE_FORMAT    INTEGER DEFAULT -1,
    CONSTRAINT PK_PAYMENT_DOC_IMAGES PRIMARY KEY (ID_PAYMENT_DOC, IMAGE_KIND, PAGE_NUMBER),
    CONSTRAINT FK_PAYMENT_DOC_IMAGES_KIND FOREIGN KEY (IMAGE_KIND) REFERENCES IMAGE_KINDS (ID),
    CONSTRAINT CHK_PAYMENT_DOC_IMAGES_PAGE CHECK (PAGE_NUMBER >= 1)
);

INSERT INTO IMAGE_KINDS (ID, NAME) VALUES (1, 'Скан документа');
INSERT INTO IMAGE_KINDS (ID, NAME) VALUES (2, 'Платёжное поручение');
INSERT INTO IMAGE_KINDS (ID, NAME) VALUES (3, 'Фотография');
INSERT INTO IMAGE_KINDS (ID, NAME) VALUES (4, 'Прочее');

GRANT ALL ON IMAGE_KINDS TO PUBLIC;
GRANT ALL ON PAYMENT_DOC_IMAGES TO PUBLIC;
