-- script for DuckDB, as 'tav sql' wrote it.
DROP SCHEMA IF EXISTS tavoline CASCADE;
CREATE SCHEMA tavoline;
USE tavoline;
CREATE TABLE needed (line BIGINT, graphs BIGINT);

-- 1: load large.tav
CREATE TABLE graph AS
SELECT id, lvl, self = 1 AS self, name, CAST(split(subs, ',') AS BIGINT[]) AS subs
FROM read_csv(['large/graphs/part-0001.tsv'],
    auto_detect = false, header = false, delim = '\t', quote = '', escape = '',
    hive_partitioning = false, columns = {'id': 'BIGINT', 'lvl': 'SMALLINT', 'self': 'SMALLINT', 'name': 'VARCHAR', 'subs': 'VARCHAR'});
CREATE TABLE values_1 (id BIGINT, lvl SMALLINT, v DOUBLE);

-- 2: load-i1 large.txt
CREATE TABLE values_2 AS
SELECT id, lvl, v
FROM read_csv(['large/values-1/part-0001.tsv'],
    auto_detect = false, header = false, delim = '\t', quote = '', escape = '',
    hive_partitioning = false, columns = {'id': 'BIGINT', 'lvl': 'SMALLINT', 'v': 'DOUBLE'});
-- I1 is values_2, I2 is values_1.

-- 3: i2-gets-i1
DROP TABLE values_1;
-- I1 is values_2, I2 is values_2.

-- 4: list-lt-subs lt
CREATE TABLE walk (id BIGINT, lvl SMALLINT, v DOUBLE, lo DOUBLE);
INSERT INTO walk
SELECT y.id, 0, y.v, NULL
FROM (SELECT id, v FROM values_2 WHERE lvl = 0 AND NOT isnan(v)) y;
INSERT INTO walk
SELECT coalesce(m.id, y.id), 1, y.v, m.lo
FROM (
    SELECT id, min(lo) AS lo
    FROM (
        SELECT g.id, least(w.v, w.lo) AS lo
        FROM (SELECT id, unnest(subs) AS s FROM graph WHERE lvl = 1) g
        JOIN (SELECT id, v, lo FROM walk WHERE lvl = 0 AND v IS NOT NULL) w ON w.id = g.s
    ) n
    GROUP BY id
) m
FULL JOIN (SELECT id, v FROM values_2 WHERE lvl = 1 AND NOT isnan(v)) y ON y.id = m.id;
CREATE TABLE found (id BIGINT);
INSERT INTO found
SELECT m.id
FROM walk m
JOIN values_2 i ON i.id = m.id AND i.lvl = m.lvl
WHERE NOT isnan(i.v) AND m.lo > i.v + 1e-8;
INSERT INTO found
SELECT m.id
FROM (
    SELECT id, min(lo) AS lo
    FROM (
        SELECT g.id, least(w.v, w.lo) AS lo
        FROM (SELECT id, unnest(subs) AS s FROM graph WHERE lvl = 2 AND id BETWEEN 3 AND 5) g
        JOIN (SELECT id, v, lo FROM walk WHERE lvl = 1 AND v IS NOT NULL) w ON w.id = g.s
    ) n
    GROUP BY id
) m
JOIN values_2 i ON i.id = m.id
WHERE i.lvl = 2 AND i.id BETWEEN 3 AND 5 AND NOT isnan(i.v) AND m.lo > i.v + 1e-8;
INSERT INTO found
SELECT m.id
FROM (
    SELECT id, min(lo) AS lo
    FROM (
        SELECT g.id, least(w.v, w.lo) AS lo
        FROM (SELECT id, unnest(subs) AS s FROM graph WHERE lvl = 2 AND id BETWEEN 6 AND 7) g
        JOIN (SELECT id, v, lo FROM walk WHERE lvl = 1 AND v IS NOT NULL) w ON w.id = g.s
    ) n
    GROUP BY id
) m
JOIN values_2 i ON i.id = m.id
WHERE i.lvl = 2 AND i.id BETWEEN 6 AND 7 AND NOT isnan(i.v) AND m.lo > i.v + 1e-8;
DROP TABLE walk;
CREATE TABLE list_1 AS
SELECT g.id AS pos, g.name
FROM graph g
JOIN (
    SELECT DISTINCT id FROM found
) f ON f.id = g.id;
DROP TABLE found;

-- 5: list-le-supers le
CREATE TABLE walk (id BIGINT, lvl SMALLINT, v DOUBLE, hi DOUBLE);
CREATE TABLE part (id BIGINT, hi DOUBLE);
INSERT INTO part
SELECT id, max(hi) AS hi
FROM (
    SELECT e.s AS id, e.hi
    FROM (
        SELECT unnest(g.subs) AS s, w.v AS hi
        FROM graph g JOIN values_2 w ON w.id = g.id
        WHERE g.lvl = 2 AND g.id BETWEEN 3 AND 5 AND w.lvl = 2 AND w.id BETWEEN 3 AND 5 AND NOT isnan(w.v)
    ) e
) n
GROUP BY id;
INSERT INTO part
SELECT id, max(hi) AS hi
FROM (
    SELECT e.s AS id, e.hi
    FROM (
        SELECT unnest(g.subs) AS s, w.v AS hi
        FROM graph g JOIN values_2 w ON w.id = g.id
        WHERE g.lvl = 2 AND g.id BETWEEN 6 AND 7 AND w.lvl = 2 AND w.id BETWEEN 6 AND 7 AND NOT isnan(w.v)
    ) e
) n
GROUP BY id;
INSERT INTO walk
SELECT coalesce(m.id, y.id), 1, y.v, m.hi
FROM (
    SELECT id, max(hi) AS hi
    FROM (
        SELECT id, hi FROM part
    ) n
    GROUP BY id
) m
FULL JOIN (SELECT id, v FROM values_2 WHERE lvl = 1 AND NOT isnan(v)) y ON y.id = m.id;
DROP TABLE part;
INSERT INTO walk
SELECT coalesce(m.id, y.id), 0, y.v, m.hi
FROM (
    SELECT id, max(hi) AS hi
    FROM (
        SELECT e.s AS id, e.hi
        FROM (
            SELECT unnest(g.subs) AS s, greatest(w.v, w.hi) AS hi
            FROM graph g JOIN walk w ON w.id = g.id
            WHERE g.lvl = 1 AND w.lvl = 1 AND w.v IS NOT NULL
        ) e
    ) n
    GROUP BY id
) m
FULL JOIN (SELECT id, v FROM values_2 WHERE lvl = 0 AND NOT isnan(v)) y ON y.id = m.id;
CREATE TABLE list_2 AS
SELECT g.id AS pos, g.name
FROM graph g
JOIN (
    SELECT m.id
    FROM walk m
    JOIN values_2 i ON i.id = m.id AND i.lvl = m.lvl
    WHERE NOT isnan(i.v) AND i.v + 1e-8 >= m.hi
) f ON f.id = g.id;
DROP TABLE walk;

-- 6: list-ge ge
CREATE TABLE found (id BIGINT);
INSERT INTO found
SELECT i.id
FROM values_2 i
JOIN values_2 y ON y.id = i.id
WHERE i.id BETWEEN 0 AND 2 AND y.id BETWEEN 0 AND 2 AND NOT isnan(i.v) AND NOT isnan(y.v) AND i.v >= y.v - 1e-8;
INSERT INTO found
SELECT i.id
FROM values_2 i
JOIN values_2 y ON y.id = i.id
WHERE i.id BETWEEN 3 AND 5 AND y.id BETWEEN 3 AND 5 AND NOT isnan(i.v) AND NOT isnan(y.v) AND i.v >= y.v - 1e-8;
INSERT INTO found
SELECT i.id
FROM values_2 i
JOIN values_2 y ON y.id = i.id
WHERE i.id BETWEEN 6 AND 7 AND y.id BETWEEN 6 AND 7 AND NOT isnan(i.v) AND NOT isnan(y.v) AND i.v >= y.v - 1e-8;
CREATE TABLE list_3 AS
SELECT g.id AS pos, g.name
FROM graph g
JOIN (
    SELECT DISTINCT id FROM found
) f ON f.id = g.id;
DROP TABLE found;

-- 7: avg-sub
CREATE TABLE values_3 (id BIGINT, lvl SMALLINT, v DOUBLE);
INSERT INTO values_3
SELECT id, lvl, sum(v) / count(*) AS v
FROM (
    SELECT g.id, g.lvl, i.v
    FROM (SELECT id, lvl, unnest(subs) AS s FROM graph WHERE lvl = 1) g
    JOIN (SELECT id, v FROM values_2 WHERE lvl = 0) i ON i.id = g.s
) n
GROUP BY id, lvl;
INSERT INTO values_3
SELECT id, lvl, sum(v) / count(*) AS v
FROM (
    SELECT g.id, g.lvl, i.v
    FROM (SELECT id, lvl, unnest(subs) AS s FROM graph WHERE lvl = 2 AND id BETWEEN 3 AND 5) g
    JOIN (SELECT id, v FROM values_2 WHERE lvl = 1) i ON i.id = g.s
) n
GROUP BY id, lvl;
INSERT INTO values_3
SELECT id, lvl, sum(v) / count(*) AS v
FROM (
    SELECT g.id, g.lvl, i.v
    FROM (SELECT id, lvl, unnest(subs) AS s FROM graph WHERE lvl = 2 AND id BETWEEN 6 AND 7) g
    JOIN (SELECT id, v FROM values_2 WHERE lvl = 1) i ON i.id = g.s
) n
GROUP BY id, lvl;
-- I1 is values_2, I2 is values_3.

-- 8: avg-super
CREATE TABLE values_4 (id BIGINT, lvl SMALLINT, v DOUBLE);
INSERT INTO values_4
SELECT id, lvl, sum(v) / count(*) AS v
FROM (
    SELECT s AS id, lvl, v
    FROM (SELECT i.v, unnest(g.subs) AS s, g.lvl - 1 AS lvl FROM graph g JOIN values_2 i ON i.id = g.id WHERE g.lvl = 1 AND i.lvl = 1) e
) n
GROUP BY id, lvl;
CREATE TABLE part (id BIGINT, lvl SMALLINT, v DOUBLE, n BIGINT);
INSERT INTO part
SELECT id, lvl, sum(v), count(*)
FROM (
    SELECT s AS id, lvl, v
    FROM (SELECT i.v, unnest(g.subs) AS s, g.lvl - 1 AS lvl FROM graph g JOIN values_2 i ON i.id = g.id WHERE g.lvl = 2 AND g.id BETWEEN 3 AND 5 AND i.lvl = 2 AND i.id BETWEEN 3 AND 5) e
) n
GROUP BY id, lvl;
INSERT INTO part
SELECT id, lvl, sum(v), count(*)
FROM (
    SELECT s AS id, lvl, v
    FROM (SELECT i.v, unnest(g.subs) AS s, g.lvl - 1 AS lvl FROM graph g JOIN values_2 i ON i.id = g.id WHERE g.lvl = 2 AND g.id BETWEEN 6 AND 7 AND i.lvl = 2 AND i.id BETWEEN 6 AND 7) e
) n
GROUP BY id, lvl;
INSERT INTO values_4
SELECT id, lvl, sum(v) / sum(n) AS v
FROM part
GROUP BY id, lvl;
DROP TABLE part;
DROP TABLE values_3;
-- I1 is values_2, I2 is values_4.

-- 9: max-all
CREATE TABLE values_5 (id BIGINT, lvl SMALLINT, v DOUBLE);
INSERT INTO values_5
SELECT id, lvl, max(v) AS v
FROM (
    SELECT s AS id, lvl, v
    FROM (SELECT i.v, unnest(g.subs) AS s, g.lvl - 1 AS lvl FROM graph g JOIN values_2 i ON i.id = g.id WHERE g.lvl = 1 AND i.lvl = 1) e
) n
GROUP BY id, lvl;
CREATE TABLE part (id BIGINT, lvl SMALLINT, v DOUBLE);
INSERT INTO part
SELECT id, lvl, max(v)
FROM (
    SELECT g.id, g.lvl, i.v
    FROM (SELECT id, lvl, unnest(subs) AS s FROM graph WHERE lvl = 1) g
    JOIN (SELECT id, v FROM values_2 WHERE lvl = 0) i ON i.id = g.s
) n
GROUP BY id, lvl;
INSERT INTO part
SELECT id, lvl, max(v)
FROM (
    SELECT s AS id, lvl, v
    FROM (SELECT i.v, unnest(g.subs) AS s, g.lvl - 1 AS lvl FROM graph g JOIN values_2 i ON i.id = g.id WHERE g.lvl = 2 AND g.id BETWEEN 3 AND 5 AND i.lvl = 2 AND i.id BETWEEN 3 AND 5) e
) n
GROUP BY id, lvl;
INSERT INTO part
SELECT id, lvl, max(v)
FROM (
    SELECT s AS id, lvl, v
    FROM (SELECT i.v, unnest(g.subs) AS s, g.lvl - 1 AS lvl FROM graph g JOIN values_2 i ON i.id = g.id WHERE g.lvl = 2 AND g.id BETWEEN 6 AND 7 AND i.lvl = 2 AND i.id BETWEEN 6 AND 7) e
) n
GROUP BY id, lvl;
INSERT INTO values_5
SELECT id, lvl, max(v) AS v
FROM part
GROUP BY id, lvl;
DROP TABLE part;
CREATE TABLE part (id BIGINT, lvl SMALLINT, v DOUBLE);
INSERT INTO part
SELECT id, lvl, max(v)
FROM (
    SELECT g.id, g.lvl, i.v
    FROM (SELECT id, lvl, unnest(subs) AS s FROM graph WHERE lvl = 2 AND id BETWEEN 3 AND 5) g
    JOIN (SELECT id, v FROM values_2 WHERE lvl = 1) i ON i.id = g.s
) n
GROUP BY id, lvl;
INSERT INTO part
SELECT id, lvl, max(v)
FROM (
    SELECT g.id, g.lvl, i.v
    FROM (SELECT id, lvl, unnest(subs) AS s FROM graph WHERE lvl = 2 AND id BETWEEN 6 AND 7) g
    JOIN (SELECT id, v FROM values_2 WHERE lvl = 1) i ON i.id = g.s
) n
GROUP BY id, lvl;
INSERT INTO values_5
SELECT id, lvl, max(v) AS v
FROM part
GROUP BY id, lvl;
DROP TABLE part;
DROP TABLE values_4;
-- I1 is values_2, I2 is values_5.

-- 10: supers above ge
INSERT INTO needed SELECT 10, CASE WHEN count(*) > 0 THEN count(*) ELSE CAST(error('script:10: supers failed: there is no list ''ge''') AS BIGINT) END FROM list_3;
CREATE TABLE reached (id BIGINT, d BIGINT);
INSERT INTO reached
SELECT g.id, 0
FROM graph g
WHERE EXISTS (SELECT * FROM list_3 a WHERE a.name = g.name);
INSERT INTO reached
SELECT f.id, 1
FROM (
    SELECT e.id AS id
    FROM (
        SELECT l.id
        FROM (SELECT id, unnest(subs) AS s FROM graph WHERE lvl >= 1) l
        JOIN reached r ON r.id = l.s
        WHERE r.d = 0
    ) e
    WHERE NOT EXISTS (SELECT * FROM reached o WHERE o.id = e.id)
    GROUP BY e.id
) f;
INSERT INTO reached
SELECT f.id, 2
FROM (
    SELECT e.id AS id
    FROM (
        SELECT l.id
        FROM (SELECT id, unnest(subs) AS s FROM graph WHERE lvl >= 2) l
        JOIN reached r ON r.id = l.s
        WHERE r.d = 1
    ) e
    WHERE NOT EXISTS (SELECT * FROM reached o WHERE o.id = e.id)
    GROUP BY e.id
) f;
CREATE TABLE list_4 AS
SELECT g.id AS pos, g.name
FROM graph g
JOIN reached r ON r.id = g.id;
DROP TABLE reached;

-- For more questions: the invariants at the end.
CREATE VIEW i1 AS SELECT * FROM values_2;
CREATE VIEW i2 AS SELECT * FROM values_5;
