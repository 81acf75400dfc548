#!/usr/bin/env python3
"""The lines of "xvcr acompanha" as a session of psql: each batch with the positions behind it in one transaction.

A batch ends where acompanha has told all that there was, where a pass begins or ends, and at a size. A last line
without line feed is one that was cut, and a batch that was not ended is not committed by anyone.
"""
import sys

MOST_LINES, MOST_BYTES = 2000, 32 << 20
BEGIN = (b"BEGIN;\nCOPY chegada (linha) FROM STDIN "
         b"WITH (FORMAT csv, QUOTE E'\\x01', DELIMITER E'\\x02');\n")  # bytes that JSON never holds
END = b"\\.\nSELECT xvcr.aplica();\nCOMMIT;\n"


def main():
    out = sys.stdout.buffer
    out.write(b"DO $$ BEGIN IF NOT pg_try_advisory_lock(hashtext('xvcr.posicao')) THEN "
              b"RAISE 'another one keeps this database equal already'; END IF; END $$;\n"
              b"CREATE TEMP TABLE chegada (seq bigint GENERATED ALWAYS AS IDENTITY, linha jsonb NOT NULL);\n")
    lines = size = 0

    def end():
        nonlocal lines, size
        if lines:
            out.write(END)
            out.flush()
        lines = size = 0

    for line in sys.stdin.buffer:
        if not line.endswith(b"\n"):
            break
        if line.startswith(b'{"evento":"passagem",'):
            end()
        if line.startswith(b'{"evento":"emDia"') and not lines:
            out.write(b"SELECT 1;\n")  # a server that is gone is noticed
            out.flush()
            continue
        if not lines:
            out.write(BEGIN)
        out.write(line)
        lines, size = lines + 1, size + len(line)
        if lines >= MOST_LINES or size >= MOST_BYTES or line.startswith(
                (b'{"evento":"passagemConcluida",', b'{"evento":"emDia"')):
            end()
    end()
    return 0


if __name__ == "__main__":
    try:
        sys.exit(main())
    except BrokenPipeError:
        sys.stderr.write("batches.py: psql is gone\n")
        sys.exit(1)
