/* Mass edit: the records a user marked in a list before one column of all of them is set to a
   new value. The host writes the keys of the marked rows under its session number (the number
   of the database connection), runs the update statement, which joins this table through the
   session, and deletes its marks again. A session sees only its own marks; marks left behind by
   a session that ended abnormally carry a number that no later connection gets. */
CREATE TABLE MEDIT_MARKS (
    SESSION_ID  INTEGER NOT NULL,
    RECORD_ID   INTEGER NOT NULL,
    CONSTRAINT PK_MEDIT_MARKS PRIMARY KEY (SESSION_ID, RECORD_ID)
);
