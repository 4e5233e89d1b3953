-- How far the radio got with each recipient of an outgoing message, written as the radio
-- reports it so that a restart resumes where it stopped: the segments handed to the network,
-- and the outcome (0 not sent yet, 1 sent, 2 failed, with the reason in `failure`).
ALTER TABLE addresses ADD COLUMN sent_segments INTEGER NOT NULL DEFAULT 0;
ALTER TABLE addresses ADD COLUMN outcome INTEGER NOT NULL DEFAULT 0;
ALTER TABLE addresses ADD COLUMN failure TEXT NOT NULL DEFAULT '';
-- A message sent before the store kept this was sent to all of its recipients.
UPDATE addresses SET outcome = 1
    WHERE message_id IN (SELECT id FROM messages WHERE folder = 1 AND status = 8);
