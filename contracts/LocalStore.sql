-- The local mail store: one SQLite file. This script makes an empty store; the importer and the tests run it on
-- a new file, and the MAPI provider checks application_id and user_version before it trusts a file.
--
-- Text is UTF-8. Times are FILETIME values: 100 ns since 1601-01-01 UTC. NULL means: the property is absent.
-- Small columns that tables show stand in `message`; what is long stands in tables of its own, so that reading
-- a folder's contents does not read its bodies.

PRAGMA application_id = 0x544D5153;
PRAGMA user_version = 1;

CREATE TABLE setting
(
    name  TEXT PRIMARY KEY,
    value
) WITHOUT ROWID;

CREATE TABLE folder
(
    id                     INTEGER PRIMARY KEY AUTOINCREMENT,
    parent_id              INTEGER REFERENCES folder (id),    -- NULL for the root alone
    name                   TEXT NOT NULL COLLATE NOCASE,
    container_class        TEXT,                              -- PR_CONTAINER_CLASS
    comment                TEXT,
    creation_time          INTEGER,
    last_modification_time INTEGER,
    content_change_number  INTEGER NOT NULL DEFAULT 0,        -- raised by every change of the folder's messages
    UNIQUE (parent_id, name)
);

CREATE TABLE message
(
    id                     INTEGER PRIMARY KEY AUTOINCREMENT, -- never used again: entry ids hold it
    folder_id              INTEGER NOT NULL REFERENCES folder (id),
    message_class          TEXT NOT NULL,
    subject                TEXT NOT NULL,                     -- empty when the mail has none
    sender_name            TEXT,
    sender_address_type    TEXT,
    sender_address         TEXT,
    display_to             TEXT NOT NULL,                     -- names joined with "; "
    display_cc             TEXT NOT NULL,
    display_bcc            TEXT NOT NULL,
    client_submit_time     INTEGER,
    delivery_time          INTEGER,
    creation_time          INTEGER,
    last_modification_time INTEGER,
    message_flags          INTEGER NOT NULL DEFAULT 0,        -- PR_MESSAGE_FLAGS: MSGFLAG_READ 1, MSGFLAG_UNSENT 8, MSGFLAG_HASATTACH 16 ...
    message_size           INTEGER NOT NULL DEFAULT 0,        -- bytes
    flag_status            INTEGER,                           -- PR_FLAG_STATUS: 2 flagged, 1 complete
    importance             INTEGER
);
-- A folder's contents table is in this order.
CREATE INDEX message_by_folder ON message (folder_id, id);

CREATE TABLE message_text
(
    message_id INTEGER PRIMARY KEY REFERENCES message (id) ON DELETE CASCADE,
    headers    TEXT,                                          -- PR_TRANSPORT_MESSAGE_HEADERS, whole
    body       TEXT                                           -- PR_BODY
);

-- Every other property of a message, by its full 32-bit tag (Unicode form for text, id of a named property from
-- named_property). PT_LONG, PT_BOOLEAN, PT_I8, PT_SYSTIME as INTEGER, PT_DOUBLE and PT_APPTIME as REAL,
-- PT_UNICODE as TEXT, PT_BINARY and PT_CLSID as BLOB.
CREATE TABLE message_property
(
    message_id INTEGER NOT NULL REFERENCES message (id) ON DELETE CASCADE,
    tag        INTEGER NOT NULL,
    value,
    PRIMARY KEY (message_id, tag)
) WITHOUT ROWID;

CREATE TABLE recipient
(
    message_id   INTEGER NOT NULL REFERENCES message (id) ON DELETE CASCADE,
    row_id       INTEGER NOT NULL,                            -- PR_ROWID, from 0, the order of the table
    type         INTEGER NOT NULL,                            -- MAPI_TO 1, MAPI_CC 2, MAPI_BCC 3
    name         TEXT NOT NULL,                               -- PR_DISPLAY_NAME; the address when there is no name
    address_type TEXT,
    address      TEXT,
    PRIMARY KEY (message_id, row_id)
) WITHOUT ROWID;

CREATE TABLE attachment
(
    message_id   INTEGER NOT NULL REFERENCES message (id) ON DELETE CASCADE,
    number       INTEGER NOT NULL,                            -- PR_ATTACH_NUM, from 0
    method       INTEGER NOT NULL,                            -- PR_ATTACH_METHOD: ATTACH_BY_VALUE 1, ATTACH_EMBEDDED_MSG 5
    file_name    TEXT,                                        -- PR_ATTACH_LONG_FILENAME
    display_name TEXT,                                        -- PR_DISPLAY_NAME; the file name, or an embedded message's subject
    mime_tag     TEXT,                                        -- PR_ATTACH_MIME_TAG
    content_id   TEXT,                                        -- PR_ATTACH_CONTENT_ID
    size         INTEGER NOT NULL,                            -- bytes of the decoded content
    PRIMARY KEY (message_id, number)
) WITHOUT ROWID;

CREATE TABLE attachment_data
(
    message_id INTEGER NOT NULL REFERENCES message (id) ON DELETE CASCADE,
    number     INTEGER NOT NULL,
    data       BLOB,                                          -- PR_ATTACH_DATA_BIN
    PRIMARY KEY (message_id, number)
);

-- Property ids from 0x8000 on and the names they stand for.
CREATE TABLE named_property
(
    id   INTEGER PRIMARY KEY,
    guid BLOB NOT NULL,                                       -- 16 bytes, as GUID lies in memory
    lid  INTEGER,                                             -- MNID_ID
    name TEXT                                                 -- MNID_STRING
);

INSERT INTO setting (name, value)
VALUES ('store_uid', randomblob(16)),                         -- the MAPIUID in every entry id of this store
       ('display_name', 'Local Mail'),
       ('service_name', 'LocalMapi');                         -- PR_SERVICE_NAME of the profile's service

-- Fixed ids: the special folders are known by them.
INSERT INTO folder (id, parent_id, name, container_class)
VALUES (1, NULL, 'Root', NULL),
       (2, 1, 'Top of Personal Folders', NULL),               -- the IPM subtree, top of what a user sees
       (3, 2, 'Inbox', 'IPF.Note'),
       (4, 2, 'Outbox', 'IPF.Note'),
       (5, 2, 'Sent Items', 'IPF.Note'),
       (6, 2, 'Deleted Items', 'IPF.Note'),
       (7, 2, 'Calendar', 'IPF.Appointment'),
       (8, 2, 'Contacts', 'IPF.Contact'),
       (9, 2, 'Tasks', 'IPF.Task'),
       (10, 2, 'Journal', 'IPF.Journal'),
       (11, 2, 'Notes', 'IPF.StickyNote');
