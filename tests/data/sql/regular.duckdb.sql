-- script for DuckDB, as 'tav sql' wrote it.
DROP SCHEMA IF EXISTS tavoline CASCADE;
CREATE SCHEMA tavoline;
USE tavoline;
CREATE TABLE needed (line BIGINT, graphs BIGINT);
-- # Every command on a database in which each link leads one level down

-- 2: load regular.tav
CREATE TABLE graph AS
SELECT id, lvl, self = 1 AS self, name, CAST(split(subs, ',') AS BIGINT[]) AS subs
FROM read_csv(['regular/graphs/part-0001.tsv', 'regular/graphs/part-0002.tsv'],
    auto_detect = false, header = false, delim = '\t', quote = '', escape = '',
    hive_partitioning = false, columns = {'id': 'BIGINT', 'lvl': 'SMALLINT', 'self': 'SMALLINT', 'name': 'VARCHAR', 'subs': 'VARCHAR'});
CREATE TABLE values_1 (id BIGINT, lvl SMALLINT, v DOUBLE);

-- 3: load-i1 a.txt
CREATE TABLE values_2 AS
SELECT id, lvl, v
FROM read_csv(['regular/values-1/part-0001.tsv', 'regular/values-1/part-0002.tsv'],
    auto_detect = false, header = false, delim = '\t', quote = '', escape = '',
    hive_partitioning = false, columns = {'id': 'BIGINT', 'lvl': 'SMALLINT', 'v': 'DOUBLE'});
-- I1 is values_2, I2 is values_1.

-- 4: load-i2 b.txt
CREATE TABLE values_3 AS
SELECT id, lvl, v
FROM read_csv(['regular/values-2/part-0001.tsv', 'regular/values-2/part-0002.tsv'],
    auto_detect = false, header = false, delim = '\t', quote = '', escape = '',
    hive_partitioning = false, columns = {'id': 'BIGINT', 'lvl': 'SMALLINT', 'v': 'DOUBLE'});
DROP TABLE values_1;
-- I1 is values_2, I2 is values_3.

-- 5: list-ge ge
CREATE TABLE list_1 AS
SELECT g.id AS pos, g.name
FROM graph g
JOIN (
    SELECT i.id
    FROM values_2 i
    JOIN values_3 y ON y.id = i.id
    WHERE NOT isnan(i.v) AND NOT isnan(y.v) AND i.v >= y.v - 1e-8
) f ON f.id = g.id;

-- 6: list-ge-subs "the graph's"   # a name with a blank and a quote
CREATE TABLE walk (id BIGINT, lvl SMALLINT, v DOUBLE, lo DOUBLE);
INSERT INTO walk
SELECT y.id, 0, y.v, NULL
FROM (SELECT id, v FROM values_3 WHERE lvl = 0 AND NOT isnan(v)) y;
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
FULL JOIN (SELECT id, v FROM values_3 WHERE lvl = 1 AND NOT isnan(v)) y ON y.id = m.id;
INSERT INTO walk
SELECT coalesce(m.id, y.id), 2, y.v, m.lo
FROM (
    SELECT id, min(lo) AS lo
    FROM (
        SELECT g.id, least(w.v, w.lo) AS lo
        FROM (SELECT id, unnest(subs) AS s FROM graph WHERE lvl = 2) g
        JOIN (SELECT id, v, lo FROM walk WHERE lvl = 1 AND v IS NOT NULL) w ON w.id = g.s
    ) n
    GROUP BY id
) m
FULL JOIN (SELECT id, v FROM values_3 WHERE lvl = 2 AND NOT isnan(v)) y ON y.id = m.id;
CREATE TABLE list_2 AS
SELECT g.id AS pos, g.name
FROM graph g
JOIN (
    SELECT m.id
    FROM walk m
    JOIN values_2 i ON i.id = m.id AND i.lvl = m.lvl
    WHERE NOT isnan(i.v) AND m.lo >= i.v - 1e-8
) f ON f.id = g.id;
DROP TABLE walk;

-- 7: list-eq-supers eq
CREATE TABLE walk (id BIGINT, lvl SMALLINT, v DOUBLE, lo DOUBLE, hi DOUBLE);
INSERT INTO walk
SELECT y.id, 2, y.v, NULL, NULL
FROM (SELECT id, v FROM values_3 WHERE lvl = 2 AND NOT isnan(v)) y;
INSERT INTO walk
SELECT coalesce(m.id, y.id), 1, y.v, m.lo, m.hi
FROM (
    SELECT id, min(lo) AS lo, max(hi) AS hi
    FROM (
        SELECT e.s AS id, e.lo, e.hi
        FROM (
            SELECT unnest(g.subs) AS s, least(w.v, w.lo) AS lo, greatest(w.v, w.hi) AS hi
            FROM graph g JOIN walk w ON w.id = g.id
            WHERE g.lvl = 2 AND w.lvl = 2 AND w.v IS NOT NULL
        ) e
    ) n
    GROUP BY id
) m
FULL JOIN (SELECT id, v FROM values_3 WHERE lvl = 1 AND NOT isnan(v)) y ON y.id = m.id;
INSERT INTO walk
SELECT coalesce(m.id, y.id), 0, y.v, m.lo, m.hi
FROM (
    SELECT id, min(lo) AS lo, max(hi) AS hi
    FROM (
        SELECT e.s AS id, e.lo, e.hi
        FROM (
            SELECT unnest(g.subs) AS s, least(w.v, w.lo) AS lo, greatest(w.v, w.hi) AS hi
            FROM graph g JOIN walk w ON w.id = g.id
            WHERE g.lvl = 1 AND w.lvl = 1 AND w.v IS NOT NULL
        ) e
    ) n
    GROUP BY id
) m
FULL JOIN (SELECT id, v FROM values_3 WHERE lvl = 0 AND NOT isnan(v)) y ON y.id = m.id;
CREATE TABLE list_3 AS
SELECT g.id AS pos, g.name
FROM graph g
JOIN (
    SELECT m.id
    FROM walk m
    JOIN values_2 i ON i.id = m.id AND i.lvl = m.lvl
    WHERE NOT isnan(i.v) AND abs(m.lo - i.v) < 1e-8 AND abs(m.hi - i.v) < 1e-8
) f ON f.id = g.id;
DROP TABLE walk;

-- 9: avg-sub
CREATE TABLE values_4 AS
SELECT id, lvl, sum(v) / count(*) AS v
FROM (
    SELECT g.id, g.lvl, i.v
    FROM (SELECT id, lvl, unnest(subs) AS s FROM graph) g
    JOIN values_2 i ON i.id = g.s
) n
GROUP BY id, lvl;
DROP TABLE values_3;
-- I1 is values_2, I2 is values_4.

-- 10: min-super
CREATE TABLE values_5 AS
SELECT id, lvl, min(v) AS v
FROM (
    SELECT s AS id, lvl, v
    FROM (SELECT i.v, unnest(g.subs) AS s, g.lvl - 1 AS lvl FROM graph g JOIN values_2 i ON i.id = g.id) e
) n
GROUP BY id, lvl;
DROP TABLE values_4;
-- I1 is values_2, I2 is values_5.

-- 11: max-all
CREATE TABLE values_6 AS
SELECT id, lvl, max(v) AS v
FROM (
    SELECT g.id, g.lvl, i.v
    FROM (SELECT id, lvl, unnest(subs) AS s FROM graph) g
    JOIN values_2 i ON i.id = g.s
    UNION ALL
    SELECT s AS id, lvl, v
    FROM (SELECT i.v, unnest(g.subs) AS s, g.lvl - 1 AS lvl FROM graph g JOIN values_2 i ON i.id = g.id) e
) n
GROUP BY id, lvl;
DROP TABLE values_5;
-- I1 is values_2, I2 is values_6.

-- 12: exchange
-- I1 is values_6, I2 is values_2.

-- 13: compute-i1 size  - order
CREATE TABLE values_7 AS
SELECT id, lvl, v
FROM read_csv(['regular/values-3/part-0001.tsv', 'regular/values-3/part-0002.tsv'],
    auto_detect = false, header = false, delim = '\t', quote = '', escape = '',
    hive_partitioning = false, columns = {'id': 'BIGINT', 'lvl': 'SMALLINT', 'v': 'DOUBLE'});
DROP TABLE values_6;
-- I1 is values_7, I2 is values_2.

-- 14: i2-gets-i1
DROP TABLE values_2;
-- I1 is values_7, I2 is values_7.

-- 15: list-from-file file names.g6
CREATE TABLE list_4 (pos BIGINT, name VARCHAR);
INSERT INTO list_4 VALUES
    (0, 'A_'),
    (1, 'odd '' \ ${name}');

-- 16: subs below file
CREATE TABLE reached (id BIGINT, d BIGINT, rank BIGINT);
INSERT INTO reached
SELECT g.id, 0, row_number() OVER (ORDER BY g.id)
FROM graph g
WHERE EXISTS (SELECT * FROM list_4 a WHERE a.name = g.name);
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
CREATE TABLE list_5 AS
SELECT r.d * 4294967296 + r.rank AS pos, g.name
FROM graph g
JOIN reached r ON r.id = g.id;
DROP TABLE reached;

-- 17: supers above ge
INSERT INTO needed SELECT 17, CASE WHEN count(*) > 0 THEN count(*) ELSE CAST(error('script:17: supers failed: there is no list ''ge''') AS BIGINT) END FROM list_1;
CREATE TABLE reached (id BIGINT, d BIGINT, rank BIGINT);
INSERT INTO reached
SELECT g.id, 0, row_number() OVER (ORDER BY g.id)
FROM graph g
WHERE EXISTS (SELECT * FROM list_1 a WHERE a.name = g.name);
INSERT INTO reached
SELECT f.id, 1, row_number() OVER (ORDER BY f.place)
FROM (
    SELECT e.id AS id, min({'major': e.rank, 'minor': e.id}) AS place
    FROM (
        SELECT l.id, r.rank
        FROM (SELECT id, unnest(subs) AS s FROM graph WHERE lvl >= 1) l
        JOIN reached r ON r.id = l.s
        WHERE r.d = 0
    ) e
    WHERE NOT EXISTS (SELECT * FROM reached o WHERE o.id = e.id)
    GROUP BY e.id
) f;
INSERT INTO reached
SELECT f.id, 2, row_number() OVER (ORDER BY f.place)
FROM (
    SELECT e.id AS id, min({'major': e.rank, 'minor': e.id}) AS place
    FROM (
        SELECT l.id, r.rank
        FROM (SELECT id, unnest(subs) AS s FROM graph WHERE lvl >= 2) l
        JOIN reached r ON r.id = l.s
        WHERE r.d = 1
    ) e
    WHERE NOT EXISTS (SELECT * FROM reached o WHERE o.id = e.id)
    GROUP BY e.id
) f;
CREATE TABLE list_6 AS
SELECT r.d * 4294967296 + r.rank AS pos, g.name
FROM graph g
JOIN reached r ON r.id = g.id;
DROP TABLE reached;

-- 18: union all below above
INSERT INTO needed SELECT 18, CASE WHEN count(*) > 0 THEN count(*) ELSE CAST(error('script:18: union failed: there is no list ''below''') AS BIGINT) END FROM list_5;
INSERT INTO needed SELECT 18, CASE WHEN count(*) > 0 THEN count(*) ELSE CAST(error('script:18: union failed: there is no list ''above''') AS BIGINT) END FROM list_6;
CREATE TABLE list_7 AS
SELECT CAST(0 AS BIGINT) AS pos, name
FROM (SELECT name FROM list_5 UNION SELECT name FROM list_6) u;

-- 19: -intersection both below eq
CREATE TABLE list_8 AS
SELECT a.pos, a.name
FROM list_5 a
WHERE EXISTS (SELECT * FROM list_3 b WHERE b.name = a.name) AND EXISTS (SELECT * FROM list_3);

-- 20: -difference rest below eq
CREATE TABLE list_9 AS
SELECT a.pos, a.name
FROM list_5 a
WHERE NOT EXISTS (SELECT * FROM list_3 b WHERE b.name = a.name) AND EXISTS (SELECT * FROM list_3);

-- 21: -list-le file
-- fails, and is passed over: there is a list 'file' already

-- 22: save-list all all.g6
COPY (SELECT name FROM list_7 ORDER BY pos, name)
TO 'all.g6' (FORMAT csv, HEADER false, DELIMITER '\t', QUOTE '', ESCAPE '', COMPRESSION none);

-- 23: save-graphs graphs.g6
COPY (SELECT name FROM graph ORDER BY id)
TO 'graphs.g6' (FORMAT csv, HEADER false, DELIMITER '\t', QUOTE '', ESCAPE '', COMPRESSION none);

-- 24: show all
SELECT name FROM list_7 ORDER BY pos, name;

-- 25: -show none
-- fails, and is passed over: there is no list 'none'

-- 26: remove-list all
DROP TABLE list_7;

-- 27: lists
SELECT name, length
FROM (
    SELECT 1 AS place, 'ge' AS name, count(*) AS length FROM list_1
    UNION ALL
    SELECT 2 AS place, 'the graph''s' AS name, count(*) AS length FROM list_2
    UNION ALL
    SELECT 3 AS place, 'eq' AS name, count(*) AS length FROM list_3
    UNION ALL
    SELECT 4 AS place, 'file' AS name, count(*) AS length FROM list_4
    UNION ALL
    SELECT 5 AS place, 'below' AS name, count(*) AS length FROM list_5
    UNION ALL
    SELECT 6 AS place, 'above' AS name, count(*) AS length FROM list_6
    UNION ALL
    SELECT 7 AS place, 'both' AS name, count(*) AS length FROM list_8
    UNION ALL
    SELECT 8 AS place, 'rest' AS name, count(*) AS length FROM list_9
) l
WHERE length > 0
ORDER BY place;

-- 28: i1-gets-i2
-- I1 is values_7, I2 is values_7.

-- 29: clear
DROP TABLE values_7;
DROP TABLE graph;

-- 30: min-sub

-- 31: list-le nothing
-- makes no list: there is no database

-- 32: load regular.tav
CREATE TABLE graph AS
SELECT id, lvl, self = 1 AS self, name, CAST(split(subs, ',') AS BIGINT[]) AS subs
FROM read_csv(['regular/graphs/part-0001.tsv', 'regular/graphs/part-0002.tsv'],
    auto_detect = false, header = false, delim = '\t', quote = '', escape = '',
    hive_partitioning = false, columns = {'id': 'BIGINT', 'lvl': 'SMALLINT', 'self': 'SMALLINT', 'name': 'VARCHAR', 'subs': 'VARCHAR'});
CREATE TABLE values_8 (id BIGINT, lvl SMALLINT, v DOUBLE);

-- For more questions: the invariants at the end.
CREATE VIEW i1 AS SELECT * FROM values_8;
CREATE VIEW i2 AS SELECT * FROM values_8;
