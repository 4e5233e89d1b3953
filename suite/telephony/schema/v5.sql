-- A message waiting on the SIM keeps the service centre its PDU carried, so that moving it
-- into the Inbox does not put the SIM's own in its place.
ALTER TABLE sim_messages ADD COLUMN service_centre TEXT NOT NULL DEFAULT '';
