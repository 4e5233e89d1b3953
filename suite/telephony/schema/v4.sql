-- Windows over folders of any size: the first address and its sort name on the message row, the
-- indexes each folder's orders page through, and per folder and status counts kept by triggers,
-- so that opening a folder, counting it and sorting it read only what is shown.
ALTER TABLE messages ADD COLUMN first_number TEXT NOT NULL DEFAULT '';
-- The case-folded name (or the number) the first address shows, kept current with the phone
-- book by the store; sort_names holds what each number's messages were given.
ALTER TABLE messages ADD COLUMN sort_name TEXT NOT NULL DEFAULT '';
UPDATE messages SET first_number = coalesce(
    (SELECT number FROM addresses WHERE message_id = messages.id AND position = 0), '');
CREATE INDEX messages_by_folder_and_status ON messages(folder, status, date, id);
CREATE INDEX messages_by_folder_and_name ON messages(folder, sort_name, date, id);
CREATE INDEX messages_by_first_number ON messages(first_number);
CREATE TABLE sort_names (
    number TEXT PRIMARY KEY,
    name TEXT NOT NULL
) WITHOUT ROWID;
-- Every stored number is given its name at the next open.
INSERT INTO sort_names SELECT DISTINCT first_number, '' FROM messages;
UPDATE messages SET sort_name = '';
INSERT INTO settings(name, value) VALUES ('sort_names_pending', 1);

CREATE TABLE message_counts (
    folder INTEGER NOT NULL,
    status INTEGER NOT NULL,
    count INTEGER NOT NULL,
    PRIMARY KEY (folder, status)
) WITHOUT ROWID;
INSERT INTO message_counts SELECT folder, status, count(*) FROM messages GROUP BY folder, status;
CREATE TRIGGER message_counts_insert AFTER INSERT ON messages BEGIN
    INSERT OR IGNORE INTO message_counts VALUES (new.folder, new.status, 0);
    UPDATE message_counts SET count = count + 1
        WHERE folder = new.folder AND status = new.status;
END;
CREATE TRIGGER message_counts_delete AFTER DELETE ON messages BEGIN
    UPDATE message_counts SET count = count - 1
        WHERE folder = old.folder AND status = old.status;
END;
CREATE TRIGGER message_counts_update AFTER UPDATE OF folder, status ON messages
    WHEN old.folder != new.folder OR old.status != new.status BEGIN
    UPDATE message_counts SET count = count - 1
        WHERE folder = old.folder AND status = old.status;
    INSERT OR IGNORE INTO message_counts VALUES (new.folder, new.status, 0);
    UPDATE message_counts SET count = count + 1
        WHERE folder = new.folder AND status = new.status;
END;
