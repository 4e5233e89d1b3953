-- Search: a full-text index over the message texts (FTS5, external content kept by triggers),
-- and the indexes that page through what it finds newest first and find messages by number.
--
-- Texts stored as UTF-16 bytes (see database.cpp) cannot be read as text by SQL; the store
-- writes a searchable copy of those into search_text, and the index reads
-- coalesce(search_text, text) through a view.
ALTER TABLE messages ADD COLUMN search_text TEXT;
CREATE INDEX messages_by_date ON messages(date, id);
CREATE INDEX addresses_by_number ON addresses(number, message_id);

CREATE VIEW message_search_source AS
    SELECT id, coalesce(search_text, text) AS body FROM messages;
-- Case and diacritics do not matter: "é" finds "e".
CREATE VIRTUAL TABLE message_search USING fts5(
    body, content = 'message_search_source', content_rowid = 'id',
    tokenize = 'unicode61 remove_diacritics 2');

CREATE TRIGGER message_search_insert AFTER INSERT ON messages BEGIN
    INSERT INTO message_search(rowid, body) VALUES (new.id, coalesce(new.search_text, new.text));
END;
CREATE TRIGGER message_search_delete AFTER DELETE ON messages BEGIN
    INSERT INTO message_search(message_search, rowid, body)
        VALUES ('delete', old.id, coalesce(old.search_text, old.text));
END;
-- A status change rewrites the row with the same text: the index is left alone then.
CREATE TRIGGER message_search_update AFTER UPDATE OF text, search_text ON messages
    WHEN old.text IS NOT new.text OR old.search_text IS NOT new.search_text BEGIN
    INSERT INTO message_search(message_search, rowid, body)
        VALUES ('delete', old.id, coalesce(old.search_text, old.text));
    INSERT INTO message_search(rowid, body) VALUES (new.id, coalesce(new.search_text, new.text));
END;

-- The index of the messages already stored is filled after the migration (database.cpp), in
-- steps that report progress.
INSERT INTO settings(name, value) VALUES ('search_index_pending', 1);
