#include "chromaticnumber.h"
#include "igraphobjects.h"
#include "invariantgroups.h"

namespace
{
InvariantValue cliqueNumber(GraphFacts &facts)
{
    return facts.cliqueNumber();
}

InvariantValue independenceNumber(GraphFacts &facts)
{
    return facts.independenceNumber();
}

InvariantValue fewestColours(GraphFacts &facts)
{
    return chromaticNumber(facts.graph(), facts.cliqueNumber());
}

InvariantValue matchingNumber(GraphFacts &facts)
{
    return facts.matchingNumber();
}

InvariantValue vertexConnectivity(GraphFacts &facts)
{
    igraph_integer_t vertices = 0;
    checkIgraph(igraph_vertex_connectivity(facts.igraph().get(), &vertices, true));
    return vertices;
}

InvariantValue edgeConnectivity(GraphFacts &facts)
{
    igraph_integer_t edges = 0;
    checkIgraph(igraph_edge_connectivity(facts.igraph().get(), &edges, true));
    return edges;
}
} // namespace

std::vector<Invariant> subsetInvariants()
{
    const char *const group = "Sets of vertices and edges";
    return {
        {"clique-number", group, "largest number of mutually adjacent vertices", "", cliqueNumber},
        {"independence-number", group, "largest number of mutually non-adjacent vertices", "", independenceNumber},
        {"chromatic-number", group, "smallest number of colours of a proper vertex colouring", "", fewestColours},
        {"matching-number", group, "largest number of edges without common vertices", "", matchingNumber},
        {"vertex-connectivity", group, "smallest number of vertices that disconnect the graph or leave one", "",
         vertexConnectivity},
        {"edge-connectivity", group, "smallest number of edges that disconnect the graph; 0 below two vertices", "",
         edgeConnectivity},
    };
}
