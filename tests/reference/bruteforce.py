"""What is hard in general, for graphs on up to eight vertices: every set of vertices is tried, by the definition.

A set of vertices is an integer with bit v for vertex v.
"""

from functools import cached_property


MEMBERS = [[v for v in range(8) if vertices >> v & 1] for vertices in range(1 << 8)]


class BruteForce:
    """The answers for one graph, given by the sets of neighbours."""

    def __init__(self, neighbours):
        self.neighbours = neighbours
        self.order = len(neighbours)
        self.all = (1 << self.order) - 1
        self.sets = range(1 << self.order)
        self.edges = [(u, v) for v in range(self.order) for u in range(v) if neighbours[u] >> v & 1]

    # What there is to know of every set.

    @cached_property
    def edges_within(self):
        counts = [0] * len(self.sets)
        for s in self.sets[1:]:
            top = s.bit_length() - 1
            rest = s ^ 1 << top
            counts[s] = counts[rest] + (self.neighbours[top] & rest).bit_count()
        return counts

    @cached_property
    def components_of(self):
        components = [[]]
        for s in self.sets[1:]:
            first = self.reached(s & -s, s)
            components.append([first, *components[s ^ first]])
        return components

    def reached(self, start, within):
        """The vertices that are joined to those of a set by paths within another."""
        before = 0
        while before != start:
            before = start
            for v in MEMBERS[before]:
                start |= self.neighbours[v] & within
        return start

    @cached_property
    def common_neighbours(self):
        """Of the vertices of the set; those of the empty set are all."""
        common = [self.all] * len(self.sets)
        for s in self.sets[1:]:
            top = s.bit_length() - 1
            common[s] = common[s ^ 1 << top] & self.neighbours[top]
        return common

    @cached_property
    def all_neighbours(self):
        union = [0] * len(self.sets)
        for s in self.sets[1:]:
            top = s.bit_length() - 1
            union[s] = union[s ^ 1 << top] | self.neighbours[top]
        return union

    def degrees_within(self, s):
        return sorted((self.neighbours[v] & s).bit_count() for v in MEMBERS[s])

    def is_independent(self, s):
        return self.edges_within[s] == 0

    def is_clique(self, s):
        k = s.bit_count()
        return self.edges_within[s] == k * (k - 1) // 2

    def is_forest(self, s):
        return self.edges_within[s] == s.bit_count() - len(self.components_of[s])

    def is_induced_path(self, s):
        k = s.bit_count()
        return self.edges_within[s] == k - 1 and len(self.components_of[s]) == 1 and self.degrees_within(s)[-1] <= 2

    def is_induced_cycle(self, s):
        k = s.bit_count()
        return (k >= 3 and self.edges_within[s] == k and len(self.components_of[s]) == 1
                and self.degrees_within(s)[0] == 2)

    @cached_property
    def path_ends(self):
        """By set: by vertex, the number of paths through exactly that set which lead from its lowest vertex there."""
        counts = [{} for _ in self.sets]
        for s in self.sets[1:]:
            low = (s & -s).bit_length() - 1
            if s == 1 << low:
                counts[s][low] = 1
                continue
            for end in MEMBERS[s ^ 1 << low]:
                total = sum(count for v, count in counts[s ^ 1 << end].items() if self.neighbours[end] >> v & 1)
                if total:
                    counts[s][end] = total
        return counts

    def cycles_through(self, s):
        """The cycles whose vertices are exactly that set."""
        low = (s & -s).bit_length() - 1
        if s.bit_count() < 3:
            return 0
        return sum(count for end, count in self.path_ends[s].items() if self.neighbours[end] >> low & 1) // 2

    # The invariants.

    def girth(self):
        return min((s.bit_count() for s in self.sets if self.cycles_through(s)), default=None)

    def clique_number(self):
        return max(s.bit_count() for s in self.sets if self.is_clique(s))

    def independence_number(self):
        return max(s.bit_count() for s in self.sets if self.is_independent(s))

    def chromatic_number(self):
        fewest = [0] + [self.order] * (len(self.sets) - 1)
        for s in self.sets[1:]:
            low = s & -s
            part = rest = s ^ low
            while part >= 0:
                if self.is_independent(part | low):
                    fewest[s] = min(fewest[s], 1 + fewest[rest ^ part])
                part = (part - 1) & rest if part else -1
        return fewest[self.all]

    def matching_number(self):
        most = [0] * len(self.sets)
        for s in self.sets[1:]:
            top = s.bit_length() - 1
            rest = s ^ 1 << top
            most[s] = max([most[rest]] + [1 + most[rest ^ 1 << v] for v in MEMBERS[self.neighbours[top] & rest]])
        return most[self.all]

    def vertex_connectivity(self):
        return min((s.bit_count() for s in self.sets
                    if len(self.components_of[self.all ^ s]) > 1 or (self.all ^ s).bit_count() == 1), default=0)

    def edge_connectivity(self):
        return min((self.edges_within[self.all] - self.edges_within[s] - self.edges_within[self.all ^ s]
                    for s in self.sets if s not in (0, self.all)), default=0)

    def automorphisms_and_orbits(self):
        """The number of automorphisms, and of the orbits of the vertices: every permutation that keeps adjacency is
        built, one image after the other."""
        orbit = list(range(self.order))
        count = 0
        images = []

        def extend():
            nonlocal count
            v = len(images)
            if v == self.order:
                count += 1
                for vertex, image in enumerate(images):
                    joined = {orbit[vertex], orbit[image]}
                    if len(joined) == 2:
                        orbit[:] = [min(joined) if o in joined else o for o in orbit]
                return
            for image in range(self.order):
                if image not in images and all((self.neighbours[v] >> u & 1) == (self.neighbours[image] >> other & 1)
                                               for u, other in enumerate(images)):
                    images.append(image)
                    extend()
                    images.pop()

        extend()
        return count, len(set(orbit))

    def domination_number(self):
        return min(s.bit_count() for s in self.sets if self.all_neighbours[s] | s == self.all)

    def total_domination_number(self):
        return min((s.bit_count() for s in self.sets if self.all_neighbours[s] == self.all), default=None)

    def vertex_cover_number(self):
        return min(s.bit_count() for s in self.sets if all(s >> u & 1 or s >> v & 1 for u, v in self.edges))

    def edge_cover_number(self):
        fewest = {0: 0}
        for u, v in self.edges:
            for covered, count in list(fewest.items()):
                more = covered | 1 << u | 1 << v
                fewest[more] = min(fewest.get(more, count + 1), count + 1)
        return fewest.get(self.all)

    def feedback_vertex_set_number(self):
        return min(s.bit_count() for s in self.sets if self.is_forest(self.all ^ s))

    def treewidth(self):
        """The least over all orders of elimination (H. L. Bodlaender et al., "On exact algorithms for treewidth",
        2012): a vertex that goes after those of a set has the neighbours that paths through the set reach."""
        if self.order == 0:
            return None
        width = [0] * len(self.sets)
        for s in self.sets[1:]:
            width[s] = self.order
            for component in self.components_of[s]:
                higher = (self.all_neighbours[component] & ~s).bit_count()
                for v in MEMBERS[component]:
                    width[s] = min(width[s], max(width[s ^ 1 << v], higher))
        return width[self.all]

    def circumference(self):
        return max((s.bit_count() for s in self.sets if self.cycles_through(s)), default=None)

    def longest_path(self):
        if self.order == 0:
            return None
        ends = [0] * len(self.sets)  # by set: the vertices at which a path through exactly that set ends
        longest = 0
        for s in self.sets[1:]:
            for end in MEMBERS[s]:
                rest = s ^ 1 << end
                if rest == 0 or ends[rest] & self.neighbours[end]:
                    ends[s] |= 1 << end
            if ends[s]:
                longest = max(longest, s.bit_count() - 1)
        return longest

    def longest_induced_path(self):
        return max((s.bit_count() - 1 for s in self.sets if s and self.is_induced_path(s)), default=None)

    def longest_induced_cycle(self):
        return max((s.bit_count() for s in self.sets if self.is_induced_cycle(s)), default=None)

    def cliques(self):
        return sum(1 for s in self.sets[1:] if self.is_clique(s) and not self.common_neighbours[s])

    def cycles(self):
        return sum(self.cycles_through(s) for s in self.sets[1:])

    def chordal(self):
        return not any(s.bit_count() > 3 and self.is_induced_cycle(s) for s in self.sets)

    def claw_free(self):
        return not any(s.bit_count() == 4 and self.degrees_within(s) == [1, 1, 1, 3] for s in self.sets)

    def threshold(self):
        forbidden = ([1, 1, 1, 1], [2, 2, 2, 2], [1, 1, 2, 2])  # two edges, a cycle, a path
        return not any(s.bit_count() == 4 and self.degrees_within(s) in forbidden for s in self.sets)

    def hamiltonian(self):
        return bool(self.order and self.cycles_through(self.all))

    def traceable(self):
        return self.longest_path() == self.order - 1 if self.order else False
