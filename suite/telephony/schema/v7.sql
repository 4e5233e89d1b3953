-- When the network reported a message delivered to each recipient (local FILETIME ticks, 0: no
-- report), for messages sent with a status report asked for.
ALTER TABLE addresses ADD COLUMN delivered INTEGER NOT NULL DEFAULT 0;
