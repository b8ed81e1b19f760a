-- What an import changed: this database after it, `antes` (attached) before it.
CREATE TEMP TABLE cambio AS
    SELECT d.Art_Id, a.Art_Id IS NULL AS nuevo, a.ART_PVE AS antes_pve, d.ART_PVE AS pve,
           a.Art_Estado AS antes_estado, d.Art_Estado AS estado
    FROM Art d LEFT JOIN antes.Art a ON a.Art_Id = d.Art_Id;
CREATE TEMP TABLE proveedor AS
    SELECT d.ARP_Id, d.ARP_Ida, d.Arp_Precio AS precio, a.ARP_Id IS NULL AS nuevo,
           a.ARP_Id IS NOT NULL AND (a.Arp_Precio IS NOT d.Arp_Precio OR a.ARP_des IS NOT d.ARP_des) AS cambiado
    FROM ArtPro d LEFT JOIN antes.ArtPro a ON a.ARP_Id = d.ARP_Id;
.mode list
.separator "  "
SELECT printf('%7d', count(*)), 'articles created' FROM cambio WHERE nuevo;
SELECT printf('%7d', count(*)), 'articles repriced' FROM cambio WHERE NOT nuevo AND antes_pve IS NOT pve;
SELECT printf('%7d', count(DISTINCT c.Art_Id)), 'articles kept at their higher price'
    FROM cambio c JOIN proveedor p ON p.ARP_Ida = c.Art_Id
    WHERE NOT c.nuevo AND c.pve > p.precio AND (p.nuevo OR p.cambiado);
SELECT printf('%7d', count(*)), 'articles retired' FROM cambio WHERE NOT nuevo AND antes_estado = 0 AND estado <> 0;
SELECT printf('%7d', count(*)), 'supplier rows created' FROM proveedor WHERE nuevo;
SELECT printf('%7d', count(*)), 'supplier rows changed' FROM proveedor WHERE cambiado;
