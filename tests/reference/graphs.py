"""The 300 graphs on up to 40 vertices of the reference: named ones, families, and random ones with fixed seeds."""

import itertools
import random

import networkx as nx


def named():
    """Yields pairs of a title and a graph on the vertices 0, 1, 2 ..."""
    for title, graph in itertools.chain(small(), families(), famous(), dense_families(), sparse(), dense(), composed()):
        yield title, nx.convert_node_labels_to_integers(nx.Graph(graph))


def generalised_petersen(n, k):
    graph = nx.cycle_graph(n)
    graph.add_edges_from((i, i + n) for i in range(n))
    graph.add_edges_from((i + n, (i + k) % n + n) for i in range(n))
    return graph


def union(*graphs):
    return nx.disjoint_union_all(graphs)


def single(count):
    return nx.empty_graph(count)


def small():
    """Without a vertex, with few, and disconnected."""
    for n in (0, 1, 2, 9, 40):
        yield f'{n} vertices without edges', single(n)
    yield 'edge', nx.path_graph(2)
    yield 'edge and a vertex', union(nx.path_graph(2), single(1))
    yield 'path of 3 and a vertex', union(nx.path_graph(3), single(1))
    yield 'triangle and a vertex', union(nx.cycle_graph(3), single(1))
    yield 'triangle and an edge', union(nx.cycle_graph(3), nx.path_graph(2))
    yield 'two edges', union(nx.path_graph(2), nx.path_graph(2))
    yield 'four edges', union(*[nx.path_graph(2)] * 4)
    yield 'twenty edges', union(*[nx.path_graph(2)] * 20)
    yield 'two triangles', union(nx.cycle_graph(3), nx.cycle_graph(3))
    yield 'two cycles of 4', union(nx.cycle_graph(4), nx.cycle_graph(4))
    yield 'cycles of 3, 4, 5 and 6', union(*[nx.cycle_graph(n) for n in (3, 4, 5, 6)])
    yield 'Petersen and two vertices', union(nx.petersen_graph(), single(2))
    yield 'two Petersens', union(nx.petersen_graph(), nx.petersen_graph())
    yield 'cube and complete graph of 5', union(nx.hypercube_graph(3), nx.complete_graph(5))
    yield 'complete graphs of 1 to 6', union(*[nx.complete_graph(n) for n in range(1, 7)])
    yield 'K_3,3 and paths of 4 and 7', union(nx.complete_bipartite_graph(3, 3), nx.path_graph(4), nx.path_graph(7))
    yield 'stars of 3 and 5 leaves', union(nx.star_graph(3), nx.star_graph(5))


def families():
    for n in (9, 12, 25, 40):
        yield f'path of {n}', nx.path_graph(n)
    for n in (9, 10, 24, 39, 40):
        yield f'cycle of {n}', nx.cycle_graph(n)
    for n in (8, 20, 39):
        yield f'star of {n} leaves', nx.star_graph(n)
    for n in (9, 16, 33):
        yield f'wheel of {n}', nx.wheel_graph(n)
    for n in (9, 10, 12):
        yield f'complete graph of {n}', nx.complete_graph(n)
    for a, b in ((2, 7), (3, 8), (4, 4), (5, 5), (4, 9), (6, 6), (2, 30)):
        yield f'K_{a},{b}', nx.complete_bipartite_graph(a, b)
    for rows, columns in ((3, 3), (3, 4), (3, 7), (4, 4), (4, 7), (5, 5), (5, 6), (3, 13), (2, 20)):
        yield f'grid of {rows} by {columns}', nx.grid_2d_graph(rows, columns)
    for n in (5, 6, 9, 20):
        yield f'prism over a cycle of {n}', nx.circular_ladder_graph(n)
    for n in (5, 6, 13, 20):
        yield f'Moebius ladder of {2 * n}', nx.circulant_graph(2 * n, [1, n])
    for n, k in ((6, 2), (7, 2), (9, 2), (9, 3), (11, 2), (12, 4), (13, 5), (14, 2), (15, 4), (16, 2), (18, 5),
                 (20, 2)):
        yield f'generalised Petersen {n}, {k}', generalised_petersen(n, k)
    for n, jumps in ((9, (1, 2)), (10, (1, 3)), (10, (2, 4, 5)), (11, (1, 3)), (12, (1, 4)), (13, (1, 5)), (14, (1, 4)),
                     (15, (1, 4)), (16, (1, 2, 4)), (17, (1, 4)), (18, (2, 3)), (20, (1, 5)), (24, (2, 3)),
                     (26, (1, 5)), (33, (1, 2)), (40, (1, 2))):
        yield f'circulant {n}, {jumps}', nx.circulant_graph(n, jumps)
    for d in (3, 4, 5):
        yield f'hypercube of {d}', nx.hypercube_graph(d)
    for rows, columns in ((3, 3), (3, 6)):
        yield f'torus of {rows} by {columns}', nx.grid_2d_graph(rows, columns, periodic=True)


def famous():
    # Those of the Petersen family on 6 to 10 vertices, by the Petersen graph and exchanges of stars for triangles.
    family = [nx.petersen_graph()]
    for graph in family:
        for v in graph:
            if graph.degree[v] == 3 and not any(graph.has_edge(a, b)
                                                for a, b in itertools.combinations(graph[v], 2)):
                other = graph.copy()
                other.remove_node(v)
                other.add_edges_from(itertools.combinations(graph[v], 2))
                if not any(nx.is_isomorphic(other, known) for known in family):
                    family.append(other)
    for number, graph in enumerate(family):
        yield f'Petersen family, {number}', graph
    for name in ('bull', 'diamond', 'house', 'house_x', 'chvatal', 'frucht', 'heawood', 'pappus', 'desargues',
                 'moebius_kantor', 'dodecahedral', 'icosahedral', 'octahedral', 'truncated_tetrahedron',
                 'truncated_cube', 'krackhardt_kite', 'sedgewick_maze'):
        yield name, getattr(nx, name + '_graph')()
    for title, n, jumps in (('McGee', 24, [12, 7, -7]), ('Nauru', 24, [5, -9, 7, -7, 9, -5]),
                            ('Franklin', 12, [5, -5]), ('F26A', 26, [-7, 7]),
                            ('Tutte and Coxeter', 30, [-13, -9, 7, -7, 9, 13]),
                            ('Dyck', 32, [5, -5, 13, -13]), ('Bidiakis cube', 12, [6, 4, -4])):
        yield title, nx.LCF_graph(n, jumps, n // len(jumps))
    tietze = nx.petersen_graph()
    tietze.add_edges_from([(10, 11), (11, 12), (10, 12)] + list(zip((10, 11, 12), tietze[0])))
    tietze.remove_node(0)
    yield 'Tietze', tietze
    yield 'Groetzsch', nx.mycielski_graph(4)
    yield 'Mycielski of 23', nx.mycielski_graph(5)
    for n in (5, 7):
        flower = nx.Graph()
        for i in range(n):
            flower.add_edges_from((('a', i), (part, i)) for part in 'bcd')
            flower.add_edge(('b', i), ('b', (i + 1) % n))
            flower.add_edge(('c', i), ('c' if i + 1 < n else 'd', (i + 1) % n))
            flower.add_edge(('d', i), ('d' if i + 1 < n else 'c', (i + 1) % n))
        yield f'flower snark of {4 * n}', flower
    clebsch = nx.hypercube_graph(4)
    clebsch.add_edges_from((v, tuple(1 - x for x in v)) for v in list(clebsch))
    yield 'Clebsch', clebsch
    squares = list(itertools.product(range(4), range(4)))
    yield 'Shrikhande', nx.Graph((a, b) for a, b in itertools.combinations(squares, 2)
                                 if ((a[0] - b[0]) % 4, (a[1] - b[1]) % 4) in
                                 {(0, 1), (0, 3), (1, 0), (3, 0), (1, 1), (3, 3)})
    yield "rook's graph of 4 by 4", nx.line_graph(nx.complete_bipartite_graph(4, 4))
    for n in (13, 17):
        yield f'Paley of {n}', nx.circulant_graph(n, {x * x % n for x in range(1, n)})
    yield 'Kneser 6, 2', nx.kneser_graph(6, 2)
    yield 'triangular of 5', nx.line_graph(nx.complete_graph(5))
    yield 'triangular of 6', nx.line_graph(nx.complete_graph(6))


def dense_families():
    for parts in ((2, 2, 2, 2, 2), (3, 3, 3), (1, 2, 3, 4), (4, 4, 4), (2,) * 8, (5, 5, 5)):
        yield f'complete multipartite {parts}', nx.complete_multipartite_graph(*parts)
    for n in (9, 11, 14):
        yield f'complement of a cycle of {n}', nx.complement(nx.cycle_graph(n))
    for n in (9, 12):
        yield f'complement of a path of {n}', nx.complement(nx.path_graph(n))
    yield 'barbell', nx.barbell_graph(5, 3)
    yield 'lollipop', nx.lollipop_graph(7, 6)
    yield 'windmill', nx.windmill_graph(5, 4)
    yield 'friendship', nx.windmill_graph(9, 3)
    for n, k in ((12, 4), (10, 3)):
        yield f'Turan {n}, {k}', nx.turan_graph(n, k)


def sparse():
    for seed in range(18):
        n = 9 + seed * 31 // 17
        yield f'random tree of {n}', nx.random_labeled_tree(n, seed=seed)
    for seed in range(20):
        n = 9 + seed * 31 // 19
        m = n + seed % 5 * n // 10
        yield f'random of {n} and {m}', nx.gnm_random_graph(n, m, seed=seed)
    for seed in range(12):
        n = 10 + seed * 30 // 11 // 2 * 2
        yield f'random cubic of {n}', nx.random_regular_graph(3, n, seed=seed)
    for seed in range(10):
        n = 9 + 2 * seed
        graph = nx.random_labeled_tree(n, seed=100 + seed)
        chooser = random.Random(seed)
        while graph.number_of_edges() < n + seed % 4 + 2:
            graph.add_edge(*chooser.sample(range(n), 2))
        yield f'tree and {seed % 4 + 3} edges, of {n}', graph
    for seed in range(6):
        yield f'random bipartite, {seed}', nx.bipartite.gnmk_random_graph(5 + seed, 7 + seed, 14 + 3 * seed, seed=seed)
    for seed in range(6):
        n = 12 + 4 * seed
        yield f'random planar of {n}', random_planar(n, seed)


def random_planar(n, seed):
    """Edges in a random order, as long as they keep it planar."""
    pairs = list(itertools.combinations(range(n), 2))
    random.Random(seed).shuffle(pairs)
    graph = nx.empty_graph(n)
    for pair in pairs[:8 * n]:
        graph.add_edge(*pair)
        if graph.number_of_edges() > 2 * n or not nx.check_planarity(graph)[0]:
            graph.remove_edge(*pair)
    return graph


def dense():
    for seed in range(18):
        n = 9 + seed // 2
        yield f'random of {n} with half of the edges, {seed % 2}', nx.gnp_random_graph(n, 0.5, seed=seed)
    for seed in range(8):
        n = 9 + seed
        yield f'random of {n} with most edges', nx.gnp_random_graph(n, 0.8, seed=seed)
    for seed in range(4):
        n = 20 + 5 * seed
        yield f'random of {n} with a third of the edges', nx.gnp_random_graph(n, 0.33, seed=seed)
    for d, n in ((4, 11), (4, 16), (5, 12), (5, 18), (6, 14), (4, 24)):
        yield f'random regular, {d} and {n}', nx.random_regular_graph(d, n, seed=d)


def composed():
    for seed in range(6):
        chooser = random.Random(seed)
        graph = single(1)
        for v in range(1, 9 + 2 * seed):
            if chooser.random() < 0.5:
                graph.add_edges_from((u, v) for u in range(v))
            else:
                graph.add_node(v)
        yield f'random threshold of {len(graph)}', graph
    for seed in range(8):
        chooser = random.Random(seed)
        width = 2 + seed % 3
        graph = nx.complete_graph(width)
        cliques = [tuple(range(width))]
        for v in range(width, 10 + 3 * seed):
            base = chooser.choice(cliques)
            graph.add_edges_from((u, v) for u in base)
            cliques += [(*some, v) for some in itertools.combinations(base, width - 1)]
        yield f'random {width}-tree of {len(graph)}', graph
    for seed in range(6):
        graph = nx.line_graph(nx.gnm_random_graph(9, 11 + 2 * seed, seed=seed))
        yield f'line graph of a random one, {len(graph)}', graph
    for seed in range(4):
        chooser = random.Random(seed)
        parts = [single(1) for _ in range(9 + 2 * seed)]
        while len(parts) > 1:
            first, second = parts.pop(chooser.randrange(len(parts))), parts.pop(chooser.randrange(len(parts)))
            parts.append(chooser.choice((nx.disjoint_union, nx.full_join))(
                first, nx.convert_node_labels_to_integers(second, first_label=len(first))))
        yield f'random cograph of {len(parts[0])}', parts[0]
    for n in (9, 10, 12):
        yield f'corona of a cycle of {n}', corona(nx.cycle_graph(n))
    yield 'corona of a complete graph of 6', corona(nx.complete_graph(6))
    # A path of four in the middle of which is any self-complementary graph is self-complementary.
    graph = nx.cycle_graph(5)
    for _ in range(2):
        a, b, c, d = range(len(graph), len(graph) + 4)
        inside = list(graph)
        graph.add_edges_from([(a, b), (b, c), (c, d)] + [(u, v) for u in inside for v in (b, c)])
        yield f'self-complementary of {len(graph)}', graph.copy()
    for height in (3, 4):
        yield f'binary tree of height {height}', nx.balanced_tree(2, height)
    yield 'caterpillar', nx.Graph([(i, i + 1) for i in range(11)] + [(i, 12 + 2 * i + j) for i in range(12)
                                                                     for j in range(2)])
    yield 'chain of triangles', nx.Graph(edge for i in range(0, 30, 2)
                                         for edge in ((i, i + 1), (i + 1, i + 2), (i, i + 2)))
    yield 'chain of cycles of 5', nx.Graph(edge for i in range(0, 36, 4)
                                           for edge in ((i, i + 1), (i + 1, i + 2), (i + 2, i + 3), (i + 3, i + 4),
                                                        (i, i + 4)))


def corona(graph):
    result = graph.copy()
    result.add_edges_from((v, v + len(graph)) for v in graph)
    return result
