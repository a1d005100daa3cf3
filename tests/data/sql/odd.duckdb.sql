-- script for DuckDB, as 'tav sql' wrote it.
DROP SCHEMA IF EXISTS tavoline CASCADE;
CREATE SCHEMA tavoline;
USE tavoline;
CREATE TABLE needed (line BIGINT, graphs BIGINT);

-- 1: load odd.tav
CREATE TABLE graph AS
SELECT id, lvl, self = 1 AS self, name, CAST(split(subs, ',') AS BIGINT[]) AS subs
FROM read_csv(['odd/graphs/part-0001.tsv'],
    auto_detect = false, header = false, delim = '\t', quote = '', escape = '',
    hive_partitioning = false, columns = {'id': 'BIGINT', 'lvl': 'SMALLINT', 'self': 'SMALLINT', 'name': 'VARCHAR', 'subs': 'VARCHAR'});
CREATE TABLE values_1 (id BIGINT, lvl SMALLINT, v DOUBLE);

-- 2: load-i1 odd.txt
CREATE TABLE values_2 AS
SELECT id, lvl, v
FROM read_csv(['odd/values-1/part-0001.tsv'],
    auto_detect = false, header = false, delim = '\t', quote = '', escape = '',
    hive_partitioning = false, columns = {'id': 'BIGINT', 'lvl': 'SMALLINT', 'v': 'DOUBLE'});
-- I1 is values_2, I2 is values_1.

-- 3: load-i2 odd.txt
DROP TABLE values_1;
-- I1 is values_2, I2 is values_2.

-- 4: list-le le
CREATE TABLE found (id BIGINT);
INSERT INTO found
SELECT i.id
FROM values_2 i
JOIN values_2 y ON y.id = i.id
WHERE i.id BETWEEN 0 AND 1 AND y.id BETWEEN 0 AND 1 AND NOT isnan(i.v) AND NOT isnan(y.v) AND y.v + 1e-8 >= i.v;
INSERT INTO found
SELECT i.id
FROM values_2 i
JOIN values_2 y ON y.id = i.id
WHERE i.id BETWEEN 2 AND 3 AND y.id BETWEEN 2 AND 3 AND NOT isnan(i.v) AND NOT isnan(y.v) AND y.v + 1e-8 >= i.v;
CREATE TABLE list_1 AS
SELECT g.id AS pos, g.name
FROM graph g
JOIN (
    SELECT DISTINCT id FROM found
) f ON f.id = g.id;
DROP TABLE found;

-- 5: list-eq-subs "eq subs"
CREATE TABLE walk (id BIGINT, lvl SMALLINT, v DOUBLE, lo DOUBLE, hi DOUBLE);
INSERT INTO walk
SELECT coalesce(m.id, y.id), 0, y.v, m.lo, m.hi
FROM (
    SELECT id, min(lo) AS lo, max(hi) AS hi
    FROM (
        SELECT g.id, y.v AS lo, y.v AS hi
        FROM graph g
        JOIN (SELECT id, v FROM values_2 WHERE lvl = 0 AND NOT isnan(v)) y ON y.id = g.id
        WHERE g.lvl = 0 AND g.self
    ) n
    GROUP BY id
) m
FULL JOIN (SELECT id, v FROM values_2 WHERE lvl = 0 AND NOT isnan(v)) y ON y.id = m.id;
INSERT INTO walk
SELECT coalesce(m.id, y.id), 1, y.v, m.lo, m.hi
FROM (
    SELECT id, min(lo) AS lo, max(hi) AS hi
    FROM (
        SELECT g.id, least(w.v, w.lo) AS lo, greatest(w.v, w.hi) AS hi
        FROM (SELECT id, unnest(subs) AS s FROM graph WHERE lvl = 1) g
        JOIN (SELECT id, v, lo, hi FROM walk WHERE lvl < 1 AND v IS NOT NULL) w ON w.id = g.s
        UNION ALL
        SELECT g.id, y.v AS lo, y.v AS hi
        FROM graph g
        JOIN (SELECT id, v FROM values_2 WHERE lvl = 1 AND NOT isnan(v)) y ON y.id = g.id
        WHERE g.lvl = 1 AND g.self
    ) n
    GROUP BY id
) m
FULL JOIN (SELECT id, v FROM values_2 WHERE lvl = 1 AND NOT isnan(v)) y ON y.id = m.id;
INSERT INTO walk
SELECT coalesce(m.id, y.id), 2, y.v, m.lo, m.hi
FROM (
    SELECT id, min(lo) AS lo, max(hi) AS hi
    FROM (
        SELECT g.id, least(w.v, w.lo) AS lo, greatest(w.v, w.hi) AS hi
        FROM (SELECT id, unnest(subs) AS s FROM graph WHERE lvl = 2) g
        JOIN (SELECT id, v, lo, hi FROM walk WHERE lvl < 2 AND v IS NOT NULL) w ON w.id = g.s
        UNION ALL
        SELECT g.id, y.v AS lo, y.v AS hi
        FROM graph g
        JOIN (SELECT id, v FROM values_2 WHERE lvl = 2 AND NOT isnan(v)) y ON y.id = g.id
        WHERE g.lvl = 2 AND g.self
    ) n
    GROUP BY id
) m
FULL JOIN (SELECT id, v FROM values_2 WHERE lvl = 2 AND NOT isnan(v)) y ON y.id = m.id;
INSERT INTO walk
SELECT coalesce(m.id, y.id), 3, y.v, m.lo, m.hi
FROM (
    SELECT id, min(lo) AS lo, max(hi) AS hi
    FROM (
        SELECT g.id, least(w.v, w.lo) AS lo, greatest(w.v, w.hi) AS hi
        FROM (SELECT id, unnest(subs) AS s FROM graph WHERE lvl = 3) g
        JOIN (SELECT id, v, lo, hi FROM walk WHERE lvl < 3 AND v IS NOT NULL) w ON w.id = g.s
        UNION ALL
        SELECT g.id, y.v AS lo, y.v AS hi
        FROM graph g
        JOIN (SELECT id, v FROM values_2 WHERE lvl = 3 AND NOT isnan(v)) y ON y.id = g.id
        WHERE g.lvl = 3 AND g.self
    ) n
    GROUP BY id
) m
FULL JOIN (SELECT id, v FROM values_2 WHERE lvl = 3 AND NOT isnan(v)) y ON y.id = m.id;
CREATE TABLE found (id BIGINT);
INSERT INTO found
SELECT m.id
FROM walk m
JOIN values_2 i ON i.id = m.id AND i.lvl = m.lvl
WHERE NOT isnan(i.v) AND abs(m.lo - i.v) < 1e-8 AND abs(m.hi - i.v) < 1e-8;
DROP TABLE walk;
CREATE TABLE barrier AS
SELECT DISTINCT x.v AS x
FROM (SELECT DISTINCT v FROM values_2 WHERE abs(v) < 5.9604644775390625e-8) x
CROSS JOIN (SELECT DISTINCT v FROM values_2 WHERE abs(v) < 1.1920928955078125e-7) y
WHERE abs(y.v - x.v) = 1e-8;
CREATE TABLE walk (x DOUBLE, id BIGINT, lvl SMALLINT, v DOUBLE, lo DOUBLE, hi DOUBLE);
INSERT INTO walk
SELECT coalesce(m.x, y.x), coalesce(m.id, y.id), 0, y.v, m.lo, m.hi
FROM (
    SELECT x, id, min(lo) AS lo, max(hi) AS hi
    FROM (
        SELECT y.x, g.id, y.v AS lo, y.v AS hi
        FROM graph g
        JOIN (SELECT b.x, y.id, y.v FROM values_2 y CROSS JOIN barrier b WHERE y.lvl = 0 AND NOT isnan(y.v) AND abs(y.v - b.x) <> 1e-8) y ON y.id = g.id
        WHERE g.lvl = 0 AND g.self
    ) n
    GROUP BY x, id
) m
FULL JOIN (SELECT b.x, y.id, y.v FROM values_2 y CROSS JOIN barrier b WHERE y.lvl = 0 AND NOT isnan(y.v) AND abs(y.v - b.x) <> 1e-8) y ON y.x = m.x AND y.id = m.id;
INSERT INTO walk
SELECT coalesce(m.x, y.x), coalesce(m.id, y.id), 1, y.v, m.lo, m.hi
FROM (
    SELECT x, id, min(lo) AS lo, max(hi) AS hi
    FROM (
        SELECT w.x, g.id, least(w.v, w.lo) AS lo, greatest(w.v, w.hi) AS hi
        FROM (SELECT id, unnest(subs) AS s FROM graph WHERE lvl = 1) g
        JOIN (SELECT x, id, v, lo, hi FROM walk WHERE lvl < 1 AND v IS NOT NULL) w ON w.id = g.s
        UNION ALL
        SELECT y.x, g.id, y.v AS lo, y.v AS hi
        FROM graph g
        JOIN (SELECT b.x, y.id, y.v FROM values_2 y CROSS JOIN barrier b WHERE y.lvl = 1 AND NOT isnan(y.v) AND abs(y.v - b.x) <> 1e-8) y ON y.id = g.id
        WHERE g.lvl = 1 AND g.self
    ) n
    GROUP BY x, id
) m
FULL JOIN (SELECT b.x, y.id, y.v FROM values_2 y CROSS JOIN barrier b WHERE y.lvl = 1 AND NOT isnan(y.v) AND abs(y.v - b.x) <> 1e-8) y ON y.x = m.x AND y.id = m.id;
INSERT INTO walk
SELECT coalesce(m.x, y.x), coalesce(m.id, y.id), 2, y.v, m.lo, m.hi
FROM (
    SELECT x, id, min(lo) AS lo, max(hi) AS hi
    FROM (
        SELECT w.x, g.id, least(w.v, w.lo) AS lo, greatest(w.v, w.hi) AS hi
        FROM (SELECT id, unnest(subs) AS s FROM graph WHERE lvl = 2) g
        JOIN (SELECT x, id, v, lo, hi FROM walk WHERE lvl < 2 AND v IS NOT NULL) w ON w.id = g.s
        UNION ALL
        SELECT y.x, g.id, y.v AS lo, y.v AS hi
        FROM graph g
        JOIN (SELECT b.x, y.id, y.v FROM values_2 y CROSS JOIN barrier b WHERE y.lvl = 2 AND NOT isnan(y.v) AND abs(y.v - b.x) <> 1e-8) y ON y.id = g.id
        WHERE g.lvl = 2 AND g.self
    ) n
    GROUP BY x, id
) m
FULL JOIN (SELECT b.x, y.id, y.v FROM values_2 y CROSS JOIN barrier b WHERE y.lvl = 2 AND NOT isnan(y.v) AND abs(y.v - b.x) <> 1e-8) y ON y.x = m.x AND y.id = m.id;
INSERT INTO walk
SELECT coalesce(m.x, y.x), coalesce(m.id, y.id), 3, y.v, m.lo, m.hi
FROM (
    SELECT x, id, min(lo) AS lo, max(hi) AS hi
    FROM (
        SELECT w.x, g.id, least(w.v, w.lo) AS lo, greatest(w.v, w.hi) AS hi
        FROM (SELECT id, unnest(subs) AS s FROM graph WHERE lvl = 3) g
        JOIN (SELECT x, id, v, lo, hi FROM walk WHERE lvl < 3 AND v IS NOT NULL) w ON w.id = g.s
        UNION ALL
        SELECT y.x, g.id, y.v AS lo, y.v AS hi
        FROM graph g
        JOIN (SELECT b.x, y.id, y.v FROM values_2 y CROSS JOIN barrier b WHERE y.lvl = 3 AND NOT isnan(y.v) AND abs(y.v - b.x) <> 1e-8) y ON y.id = g.id
        WHERE g.lvl = 3 AND g.self
    ) n
    GROUP BY x, id
) m
FULL JOIN (SELECT b.x, y.id, y.v FROM values_2 y CROSS JOIN barrier b WHERE y.lvl = 3 AND NOT isnan(y.v) AND abs(y.v - b.x) <> 1e-8) y ON y.x = m.x AND y.id = m.id;
INSERT INTO found
SELECT m.id
FROM walk m
JOIN values_2 i ON i.id = m.id AND i.lvl = m.lvl AND i.v = m.x
WHERE NOT isnan(i.v) AND abs(m.lo - i.v) < 1e-8 AND abs(m.hi - i.v) < 1e-8;
DROP TABLE walk;
DROP TABLE barrier;
CREATE TABLE list_2 AS
SELECT g.id AS pos, g.name
FROM graph g
JOIN (
    SELECT DISTINCT id FROM found
) f ON f.id = g.id;
DROP TABLE found;

-- 6: list-gt-supers gt
CREATE TABLE walk (id BIGINT, lvl SMALLINT, v DOUBLE, hi DOUBLE);
INSERT INTO walk
SELECT coalesce(m.id, y.id), 3, y.v, m.hi
FROM (
    SELECT id, max(hi) AS hi
    FROM (
        SELECT g.id, y.v AS hi
        FROM graph g
        JOIN (SELECT id, v FROM values_2 WHERE lvl = 3 AND NOT isnan(v)) y ON y.id = g.id
        WHERE g.lvl = 3 AND g.self
    ) n
    GROUP BY id
) m
FULL JOIN (SELECT id, v FROM values_2 WHERE lvl = 3 AND NOT isnan(v)) y ON y.id = m.id;
CREATE TABLE part (id BIGINT, hi DOUBLE);
INSERT INTO part
SELECT id, max(hi) AS hi
FROM (
    SELECT e.s AS id, e.hi
    FROM (
        SELECT unnest(g.subs) AS s, greatest(w.v, w.hi) AS hi
        FROM graph g JOIN walk w ON w.id = g.id
        WHERE g.id BETWEEN 0 AND 1 AND w.id BETWEEN 0 AND 1 AND g.lvl > 2 AND w.lvl > 2 AND w.v IS NOT NULL
    ) e
    JOIN graph t ON t.id = e.s
    WHERE t.lvl = 2
) n
GROUP BY id;
INSERT INTO part
SELECT id, max(hi) AS hi
FROM (
    SELECT e.s AS id, e.hi
    FROM (
        SELECT unnest(g.subs) AS s, greatest(w.v, w.hi) AS hi
        FROM graph g JOIN walk w ON w.id = g.id
        WHERE g.id BETWEEN 2 AND 3 AND w.id BETWEEN 2 AND 3 AND g.lvl > 2 AND w.lvl > 2 AND w.v IS NOT NULL
    ) e
    JOIN graph t ON t.id = e.s
    WHERE t.lvl = 2
) n
GROUP BY id;
INSERT INTO walk
SELECT coalesce(m.id, y.id), 2, y.v, m.hi
FROM (
    SELECT id, max(hi) AS hi
    FROM (
        SELECT id, hi FROM part
        UNION ALL
        SELECT g.id, y.v AS hi
        FROM graph g
        JOIN (SELECT id, v FROM values_2 WHERE lvl = 2 AND NOT isnan(v)) y ON y.id = g.id
        WHERE g.lvl = 2 AND g.self
    ) n
    GROUP BY id
) m
FULL JOIN (SELECT id, v FROM values_2 WHERE lvl = 2 AND NOT isnan(v)) y ON y.id = m.id;
DROP TABLE part;
CREATE TABLE part (id BIGINT, hi DOUBLE);
INSERT INTO part
SELECT id, max(hi) AS hi
FROM (
    SELECT e.s AS id, e.hi
    FROM (
        SELECT unnest(g.subs) AS s, greatest(w.v, w.hi) AS hi
        FROM graph g JOIN walk w ON w.id = g.id
        WHERE g.id BETWEEN 0 AND 1 AND w.id BETWEEN 0 AND 1 AND g.lvl > 1 AND w.lvl > 1 AND w.v IS NOT NULL
    ) e
    JOIN graph t ON t.id = e.s
    WHERE t.lvl = 1
) n
GROUP BY id;
INSERT INTO part
SELECT id, max(hi) AS hi
FROM (
    SELECT e.s AS id, e.hi
    FROM (
        SELECT unnest(g.subs) AS s, greatest(w.v, w.hi) AS hi
        FROM graph g JOIN walk w ON w.id = g.id
        WHERE g.id BETWEEN 2 AND 3 AND w.id BETWEEN 2 AND 3 AND g.lvl > 1 AND w.lvl > 1 AND w.v IS NOT NULL
    ) e
    JOIN graph t ON t.id = e.s
    WHERE t.lvl = 1
) n
GROUP BY id;
INSERT INTO walk
SELECT coalesce(m.id, y.id), 1, y.v, m.hi
FROM (
    SELECT id, max(hi) AS hi
    FROM (
        SELECT id, hi FROM part
        UNION ALL
        SELECT g.id, y.v AS hi
        FROM graph g
        JOIN (SELECT id, v FROM values_2 WHERE lvl = 1 AND NOT isnan(v)) y ON y.id = g.id
        WHERE g.lvl = 1 AND g.self
    ) n
    GROUP BY id
) m
FULL JOIN (SELECT id, v FROM values_2 WHERE lvl = 1 AND NOT isnan(v)) y ON y.id = m.id;
DROP TABLE part;
CREATE TABLE part (id BIGINT, hi DOUBLE);
INSERT INTO part
SELECT id, max(hi) AS hi
FROM (
    SELECT e.s AS id, e.hi
    FROM (
        SELECT unnest(g.subs) AS s, greatest(w.v, w.hi) AS hi
        FROM graph g JOIN walk w ON w.id = g.id
        WHERE g.id BETWEEN 0 AND 1 AND w.id BETWEEN 0 AND 1 AND g.lvl > 0 AND w.lvl > 0 AND w.v IS NOT NULL
    ) e
    JOIN graph t ON t.id = e.s
    WHERE t.lvl = 0
) n
GROUP BY id;
INSERT INTO part
SELECT id, max(hi) AS hi
FROM (
    SELECT e.s AS id, e.hi
    FROM (
        SELECT unnest(g.subs) AS s, greatest(w.v, w.hi) AS hi
        FROM graph g JOIN walk w ON w.id = g.id
        WHERE g.id BETWEEN 2 AND 3 AND w.id BETWEEN 2 AND 3 AND g.lvl > 0 AND w.lvl > 0 AND w.v IS NOT NULL
    ) e
    JOIN graph t ON t.id = e.s
    WHERE t.lvl = 0
) n
GROUP BY id;
INSERT INTO walk
SELECT coalesce(m.id, y.id), 0, y.v, m.hi
FROM (
    SELECT id, max(hi) AS hi
    FROM (
        SELECT id, hi FROM part
        UNION ALL
        SELECT g.id, y.v AS hi
        FROM graph g
        JOIN (SELECT id, v FROM values_2 WHERE lvl = 0 AND NOT isnan(v)) y ON y.id = g.id
        WHERE g.lvl = 0 AND g.self
    ) n
    GROUP BY id
) m
FULL JOIN (SELECT id, v FROM values_2 WHERE lvl = 0 AND NOT isnan(v)) y ON y.id = m.id;
DROP TABLE part;
CREATE TABLE list_3 AS
SELECT g.id AS pos, g.name
FROM graph g
JOIN (
    SELECT m.id
    FROM walk m
    JOIN values_2 i ON i.id = m.id AND i.lvl = m.lvl
    WHERE NOT isnan(i.v) AND i.v - 1e-8 > m.hi
) f ON f.id = g.id;
DROP TABLE walk;

-- 7: min-all
CREATE TABLE values_3 (id BIGINT, lvl SMALLINT, v DOUBLE);
CREATE TABLE part (id BIGINT, v DOUBLE, pos BIGINT, front DOUBLE);
INSERT INTO part
SELECT id, min(v), min(pos), min_by(v, pos)
FROM (
    SELECT g.id, i.v, CAST(g.pos AS BIGINT) AS pos
    FROM (SELECT id, lvl, unnest(subs) AS s, generate_subscripts(subs, 1) AS pos FROM graph WHERE id BETWEEN 0 AND 1) g
    JOIN values_2 i ON i.id = g.s
) n
GROUP BY id;
INSERT INTO part
SELECT id, min(v), min(pos), min_by(v, pos)
FROM (
    SELECT g.id, i.v, CAST(g.pos AS BIGINT) AS pos
    FROM (SELECT id, lvl, unnest(subs) AS s, generate_subscripts(subs, 1) AS pos FROM graph WHERE id BETWEEN 2 AND 3) g
    JOIN values_2 i ON i.id = g.s
) n
GROUP BY id;
INSERT INTO part
SELECT id, min(v), min(pos), min_by(v, pos)
FROM (
    SELECT s AS id, v, pos
    FROM (SELECT i.v, unnest(g.subs) AS s, 4294967296 + g.id AS pos FROM graph g JOIN values_2 i ON i.id = g.id WHERE g.id BETWEEN 0 AND 1 AND i.id BETWEEN 0 AND 1) e
) n
GROUP BY id;
INSERT INTO part
SELECT id, min(v), min(pos), min_by(v, pos)
FROM (
    SELECT s AS id, v, pos
    FROM (SELECT i.v, unnest(g.subs) AS s, 4294967296 + g.id AS pos FROM graph g JOIN values_2 i ON i.id = g.id WHERE g.id BETWEEN 2 AND 3 AND i.id BETWEEN 2 AND 3) e
) n
GROUP BY id;
INSERT INTO values_3
SELECT a.id, g.lvl, a.v
FROM (
    SELECT id, CASE WHEN isnan(min_by(front, pos)) THEN CAST('nan' AS DOUBLE) ELSE min(v) END AS v
    FROM part
    GROUP BY id
) a
JOIN graph g ON g.id = a.id;
DROP TABLE part;
-- I1 is values_2, I2 is values_3.

-- 8: max-sub
CREATE TABLE values_4 (id BIGINT, lvl SMALLINT, v DOUBLE);
INSERT INTO values_4
SELECT a.id, g.lvl, a.v
FROM (
    SELECT id, CASE WHEN isnan(min_by(v, pos)) THEN CAST('nan' AS DOUBLE) ELSE max(v) FILTER (WHERE NOT isnan(v)) END AS v
    FROM (
        SELECT g.id, i.v, CAST(g.pos AS BIGINT) AS pos
        FROM (SELECT id, lvl, unnest(subs) AS s, generate_subscripts(subs, 1) AS pos FROM graph WHERE id BETWEEN 0 AND 1) g
        JOIN values_2 i ON i.id = g.s
    ) n
    GROUP BY id
) a
JOIN graph g ON g.id = a.id;
INSERT INTO values_4
SELECT a.id, g.lvl, a.v
FROM (
    SELECT id, CASE WHEN isnan(min_by(v, pos)) THEN CAST('nan' AS DOUBLE) ELSE max(v) FILTER (WHERE NOT isnan(v)) END AS v
    FROM (
        SELECT g.id, i.v, CAST(g.pos AS BIGINT) AS pos
        FROM (SELECT id, lvl, unnest(subs) AS s, generate_subscripts(subs, 1) AS pos FROM graph WHERE id BETWEEN 2 AND 3) g
        JOIN values_2 i ON i.id = g.s
    ) n
    GROUP BY id
) a
JOIN graph g ON g.id = a.id;
DROP TABLE values_3;
-- I1 is values_2, I2 is values_4.

-- 9: avg-super
CREATE TABLE values_5 (id BIGINT, lvl SMALLINT, v DOUBLE);
CREATE TABLE part (id BIGINT, v DOUBLE, n BIGINT);
INSERT INTO part
SELECT id, sum(v), count(*)
FROM (
    SELECT s AS id, v
    FROM (SELECT i.v, unnest(g.subs) AS s FROM graph g JOIN values_2 i ON i.id = g.id WHERE g.id BETWEEN 0 AND 1 AND i.id BETWEEN 0 AND 1) e
) n
GROUP BY id;
INSERT INTO part
SELECT id, sum(v), count(*)
FROM (
    SELECT s AS id, v
    FROM (SELECT i.v, unnest(g.subs) AS s FROM graph g JOIN values_2 i ON i.id = g.id WHERE g.id BETWEEN 2 AND 3 AND i.id BETWEEN 2 AND 3) e
) n
GROUP BY id;
INSERT INTO values_5
SELECT a.id, g.lvl, a.v
FROM (
    SELECT id, sum(v) / sum(n) AS v
    FROM part
    GROUP BY id
) a
JOIN graph g ON g.id = a.id;
DROP TABLE part;
DROP TABLE values_4;
-- I1 is values_2, I2 is values_5.

-- 10: -subs below gt
CREATE TABLE reached (id BIGINT, d BIGINT, rank BIGINT);
INSERT INTO reached
SELECT g.id, 0, row_number() OVER (ORDER BY g.id)
FROM graph g
WHERE EXISTS (SELECT * FROM list_3 a WHERE a.name = g.name);
INSERT INTO reached
SELECT f.id, 1, row_number() OVER (ORDER BY f.place)
FROM (
    SELECT e.s AS id, min({'major': e.rank, 'minor': e.pos}) AS place
    FROM (
        SELECT unnest(g.subs) AS s, generate_subscripts(g.subs, 1) AS pos, r.rank
        FROM graph g JOIN reached r ON r.id = g.id
        WHERE r.d = 0
    ) e
    WHERE NOT EXISTS (SELECT * FROM reached o WHERE o.id = e.s)
    GROUP BY e.s
) f;
INSERT INTO reached
SELECT f.id, 2, row_number() OVER (ORDER BY f.place)
FROM (
    SELECT e.s AS id, min({'major': e.rank, 'minor': e.pos}) AS place
    FROM (
        SELECT unnest(g.subs) AS s, generate_subscripts(g.subs, 1) AS pos, r.rank
        FROM graph g JOIN reached r ON r.id = g.id
        WHERE r.d = 1
    ) e
    WHERE NOT EXISTS (SELECT * FROM reached o WHERE o.id = e.s)
    GROUP BY e.s
) f;
INSERT INTO reached
SELECT f.id, 3, row_number() OVER (ORDER BY f.place)
FROM (
    SELECT e.s AS id, min({'major': e.rank, 'minor': e.pos}) AS place
    FROM (
        SELECT unnest(g.subs) AS s, generate_subscripts(g.subs, 1) AS pos, r.rank
        FROM graph g JOIN reached r ON r.id = g.id
        WHERE r.d = 2
    ) e
    WHERE NOT EXISTS (SELECT * FROM reached o WHERE o.id = e.s)
    GROUP BY e.s
) f;
CREATE TABLE list_4 AS
SELECT r.d * 4294967296 + r.rank AS pos, g.name
FROM graph g
JOIN reached r ON r.id = g.id;
DROP TABLE reached;

-- For more questions: the invariants at the end.
CREATE VIEW i1 AS SELECT * FROM values_2;
CREATE VIEW i2 AS SELECT * FROM values_5;
