-- Messages: folder 0 Inbox, 1 Outbox; status as GSM::Message::Status; date in local wall-clock
-- FILETIME ticks; recipients (Outbox) or the sender (Inbox) in `addresses`.
CREATE TABLE messages (
    id INTEGER PRIMARY KEY,
    folder INTEGER NOT NULL,
    status INTEGER NOT NULL,
    text TEXT NOT NULL DEFAULT '',
    date INTEGER NOT NULL,
    service_centre TEXT NOT NULL DEFAULT '',
    validity INTEGER NOT NULL DEFAULT 255,
    reply_path INTEGER NOT NULL DEFAULT 0,
    reply_to INTEGER NOT NULL DEFAULT 0
);
CREATE INDEX messages_by_folder_and_date ON messages(folder, date, id);

CREATE TABLE addresses (
    message_id INTEGER NOT NULL REFERENCES messages(id) ON DELETE CASCADE,
    position INTEGER NOT NULL,
    number TEXT NOT NULL,
    PRIMARY KEY (message_id, position)
) WITHOUT ROWID;

CREATE TABLE contacts (
    id INTEGER PRIMARY KEY,
    first_name TEXT NOT NULL DEFAULT '',
    last_name TEXT NOT NULL DEFAULT '',
    company TEXT NOT NULL DEFAULT '',
    email TEXT NOT NULL DEFAULT '',
    selected_number INTEGER NOT NULL DEFAULT 0
);

CREATE TABLE contact_numbers (
    id INTEGER PRIMARY KEY,
    contact_id INTEGER NOT NULL REFERENCES contacts(id) ON DELETE CASCADE,
    kind INTEGER NOT NULL DEFAULT 0,
    number TEXT NOT NULL
);
CREATE INDEX contact_numbers_by_contact ON contact_numbers(contact_id, id);

-- Opaque per-service records (GSM::Preferences) and named settings (main preferences, device).
CREATE TABLE preference_records (
    service INTEGER PRIMARY KEY,
    data BLOB NOT NULL
);
CREATE TABLE settings (
    name TEXT PRIMARY KEY,
    value
) WITHOUT ROWID;

-- The service-centre list after the SIM's own centre (which lives in settings).
CREATE TABLE service_centres (
    position INTEGER PRIMARY KEY,
    name TEXT NOT NULL,
    number TEXT NOT NULL
);

CREATE TABLE sim_messages (
    id INTEGER PRIMARY KEY,
    sender TEXT NOT NULL,
    text TEXT NOT NULL,
    date INTEGER NOT NULL,
    status INTEGER NOT NULL
);

-- The latest cell-broadcast message of each channel, and the subscription (kind 0 channels,
-- kind 1 languages) as half-open ranges.
CREATE TABLE cb_messages (
    channel INTEGER PRIMARY KEY,
    language INTEGER NOT NULL,
    text TEXT NOT NULL,
    date INTEGER NOT NULL,
    count INTEGER NOT NULL
);
CREATE TABLE cb_subscription (
    kind INTEGER NOT NULL,
    first INTEGER NOT NULL,
    last INTEGER NOT NULL
);
